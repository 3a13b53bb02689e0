#pragma once

#include "platform/Terminals.h"

namespace vorle {

/// The terminals of a freedesktop system. "Terminal" is the first that is there of: what Debian
/// calls the default one, what the desktops are agreeing to call so, GNOME's, KDE's and X's own.
/// iTerm is never there.
class LinuxTerminals final : public Terminals {
public:
    struct Setting {
        QStringList programFolders; ///< where terminals are looked for
        QString userShell;          ///< from the password database

        static Setting ofThisProcess();
    };

    explicit LinuxTerminals(Setting setting) : m_setting(std::move(setting)) {}

    /// The user's shell stays open, "/bin/sh" where it lets nobody in; it also runs scripts when
    /// it is one that reads POSIX, else "/bin/sh" does.
    LoginShells shells() const override;
    QStringList names() const override;
    std::optional<TerminalCommand> command(const QString &terminal,
                                           const TerminalSession &session) const override;

private:
    Setting m_setting;
};

} // namespace vorle
