#include "platform/macos/MacTerminals.h"

#include "platform/ShellWord.h"

namespace vorle {

LoginShells MacTerminals::shells() const {
    return {QStringLiteral("/bin/zsh"), QStringLiteral("/bin/zsh")};
}

QStringList MacTerminals::names() const {
    return {QStringLiteral("Terminal"), QStringLiteral("Ghostty"), QStringLiteral("iTerm")};
}

std::optional<TerminalCommand> MacTerminals::command(const QString &terminal,
                                                     const TerminalSession &session) const {
    TerminalCommand command;
    command.program = QStringLiteral("/usr/bin/open");
    command.absence = QStringLiteral("Unable to find application");
    if (terminal == u"Ghostty") {
        // Ghostty hands the setting's text to a shell.
        command.arguments = {QStringLiteral("-n"),
                             QStringLiteral("-a"),
                             terminal,
                             QStringLiteral("--args"),
                             QStringLiteral("--window-save-state=never"),
                             QStringLiteral("--quit-after-last-window-closed=true"),
                             QStringLiteral("--initial-command=") + shells().script +
                                 QStringLiteral(" -l -c ") + shellWord(session.line)};
    } else {
        command.arguments = {QStringLiteral("-a"), terminal, session.script};
    }
    return command;
}

} // namespace vorle
