#pragma once

#include "platform/LoginItem.h"

#include <QStringList>

namespace vorle {

/// A file in the desktop's autostart folder (Desktop Application Autostart Specification 0.5). Who
/// removes or hides it by hand turns it off. One whose program is not there any more opens nothing.
class AutostartItem final : public LoginItem {
public:
    struct Setting {
        QString folder;      ///< "autostart" in the user's configuration
        QStringList command; ///< the program's path, then its arguments

        /// This program, started hidden.
        static Setting ofThisProcess();
    };

    explicit AutostartItem(Setting setting) : m_setting(std::move(setting)) {}

    Task<State> state() override;
    QString remedy(State state) const override;
    bool openedThis() const override { return false; } // its argument says so
    Task<std::optional<QString>> set(bool on) override;

    QString file() const { return m_setting.folder + QStringLiteral("/vorle.desktop"); }

private:
    Setting m_setting;
};

} // namespace vorle
