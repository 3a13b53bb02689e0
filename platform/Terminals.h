#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace vorle {

/// What a window is to run, in the two forms that terminals take.
struct TerminalSession {
    QString script; ///< the path of an executable script for LoginShells::script
    QString line;   ///< the same as one command for that shell; it removes the script, unused then
};

/// A command that opens a terminal window. Its arguments are a list: no shell reads them.
struct TerminalCommand {
    enum class Life {
        EndsOnceOpen,  ///< its end tells whether the window opened
        LastsAsAWindow ///< it may be the terminal itself
    };

    QString program; ///< a path
    QStringList arguments;
    Life life = Life::EndsOnceOpen;
    /// Words of its standard error that say there is no such terminal; empty where the command is
    /// only given when there is one.
    QString absence;

    bool operator==(const TerminalCommand &) const = default;
};

/// The login shells of the user's terminals, as paths; both take "-l".
struct LoginShells {
    QString script;  ///< reads the shell language of POSIX
    QString session; ///< the user's own, left open when a script has ended

    bool operator==(const LoginShells &) const = default;
};

/// The terminal applications of this system. Translates and starts nothing.
class Terminals {
public:
    virtual ~Terminals() = default;

    virtual LoginShells shells() const = 0;

    /// The names this system can have a terminal for, the one it comes with first.
    virtual QStringList names() const = 0;

    /// How the terminal of that name ("Terminal", "Ghostty", "iTerm") opens a window that runs the
    /// session; nothing when it is known not to be here. Reads the search path at each call.
    virtual std::optional<TerminalCommand> command(const QString &terminal,
                                                   const TerminalSession &session) const = 0;
};

} // namespace vorle
