#pragma once

#include "app/console/Console.h"
#include "base/Async.h"
#include "base/WebLink.h"

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <exception>
#include <functional>

namespace vorle {
class Application;
}

namespace vorle::cli {

enum class ExitStatus { Done = 0, Failed = 1, Usage = 2 };

/// A failure told in French.
class Failure final : public std::exception {
public:
    explicit Failure(const QString &text, ExitStatus status = ExitStatus::Failed)
        : m_text(text), m_utf8(text.toUtf8()), m_status(status) {}

    const QString &text() const { return m_text; }
    ExitStatus status() const { return m_status; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_text;
    QByteArray m_utf8;
    ExitStatus m_status;
};

/// What was typed after the command's name.
struct Arguments {
    QStringList positional;
    QSet<QString> flags;            ///< "--json" as "json"
    QMap<QString, QString> options; ///< "--nom Tiravue" as "nom" → "Tiravue"

    bool json() const { return flags.contains(QStringLiteral("json")); }
};

/// Where a command runs: in the process that was started for it, or in the open app, whose objects
/// go on when it has ended.
enum class Host { OwnProcess, App };

/// A link for the quick capture to propose: the person adds it, or not.
struct LinkToCapture {
    QString url; ///< empty: what is in front of them
    QString title = {};
    WebLink::Giver giver = WebLink::Giver::User;
    QString problem = {}; ///< with no `url`: why what was handed over is none, in French
};

/// What was asked, and where to answer: what every command is given.
struct Context {
    Console &console;
    Arguments arguments;
    CancelToken cancel; ///< cancelled on Ctrl-C
    QStringList words;  ///< as typed, the command's name first
    Host host = Host::OwnProcess;
    /// Opens the app's quick capture; false where it holds something else that is not added yet.
    /// Empty in a process of its own.
    std::function<bool(const LinkToCapture &)> openCapture = {};
    /// Has the app end, and come back as the version that is ready. Empty as above.
    std::function<void()> relaunch = {};
    /// What that would break off besides this command, as Updater::Parts tells it. Empty as above.
    std::function<QString()> busy = {};
};

/// One command of the program. Adding one is adding a row to `commands()`.
struct Command {
    QString name;
    QString synopsis; ///< what follows the name in the help
    QString summary;
    qsizetype minArguments = 0; ///< positional arguments
    qsizetype maxArguments = 0;
    QStringList flags = {};
    QStringList options = {}; ///< those that take a value
    /// It asks for the right to change the topics, if only a demonstration's, and nothing at the
    /// keyboard: an app that has that right runs it for a terminal.
    bool throughApp = false;
    /// Hands the command what it works with, and nothing else.
    Task<ExitStatus> (*run)(Context &context, Application &app);
};

/// All commands, in the order the help shows them.
const QList<Command> &commands();

/// The command of that name; null when there is none.
const Command *commandNamed(const QString &name);

/// Runs the command to its end, on the application's objects. Whatever it throws is told on the
/// console, in French. All three outlive the task.
Task<ExitStatus> runCommand(const Command &command, Context &context, Application &app);

/// Reads what follows a command's name. @throws Failure with ExitStatus::Usage
Arguments parseArguments(const Command &command, const QStringList &words);

} // namespace vorle::cli
