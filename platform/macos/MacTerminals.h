#pragma once

#include "platform/Terminals.h"

namespace vorle {

/// The terminals of a Mac, opened by "/usr/bin/open", which finds them wherever they are installed
/// and whose standard error says when it does not. Plain C++, so that it is tried on any system.
///
/// Terminal and iTerm run a script that is opened with them. Ghostty asks first whether it may, so
/// it gets a command instead: a new instance, because a running one is given no arguments; as a
/// setting, because words after "-e" are also opened as files; without the windows of last time,
/// and gone with its own.
class MacTerminals final : public Terminals {
public:
    /// Both "/bin/zsh", every Mac's own.
    LoginShells shells() const override;
    QStringList names() const override;
    std::optional<TerminalCommand> command(const QString &terminal,
                                           const TerminalSession &session) const override;
};

} // namespace vorle
