#pragma once

#include "platform/LoginItem.h"

#include <QStringList>

namespace vorle {

/// A file in the desktop's autostart folder (Desktop Application Autostart Specification 0.5). Who
/// removes or hides it by hand turns it off.
class AutostartItem final : public LoginItem {
public:
    struct Setting {
        QString folder;      ///< "autostart" in the user's configuration
        QStringList command; ///< the program's path, then its arguments

        /// This program, started hidden.
        static Setting ofThisProcess();
    };

    explicit AutostartItem(Setting setting) : m_setting(std::move(setting)) {}

    State state() const override;
    QString remedy() const override { return {}; }
    bool openedThis() const override { return false; } // its argument says so
    std::optional<QString> set(bool on) override;

    QString file() const { return m_setting.folder + QStringLiteral("/vorle.desktop"); }

private:
    Setting m_setting;
};

} // namespace vorle
