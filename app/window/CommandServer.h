#pragma once

#include "app/wiring/AppSocket.h"
#include "base/Async.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <list>
#include <memory>

namespace vorle {

namespace cli {
struct Command;
struct Context;
enum class ExitStatus;
} // namespace cli

/// Runs commands for command lines while the app holds the topics: the same commands, on the app's
/// own objects, so that the window shows what they change. Main thread; it is destroyed only once
/// `closed()` has ended or nothing resumes any more.
class CommandServer final : public QObject {
    Q_OBJECT
public:
    /// Runs a command to its end, whatever it throws; both outlive the task.
    using Runner = std::function<Task<cli::ExitStatus>(const cli::Command &, cli::Context &)>;

    explicit CommandServer(Runner runner, QObject *parent = nullptr);
    ~CommandServer() override;

    /// Runs the command, tells the caller all it says, and ends the connection. It is cancelled
    /// when the caller asks so or goes away. A command that is none, or that the app does not run
    /// for others, is refused with a French sentence.
    void serve(AppConnection &caller, const AppCommand &asked);
    /// Whether a command is under way, but for that one.
    bool isRunning(const cli::Context *butFor = nullptr) const;
    /// Cancels what is under way, and ends once all of it has.
    Task<> closed();

private:
    struct RunningCommand;
    static Task<> run(QPointer<CommandServer> self, Runner runner,
                      std::shared_ptr<RunningCommand> command);

    Runner m_runner;
    std::list<std::shared_ptr<RunningCommand>> m_underWay;
    TaskGroup m_running;
    bool m_closed = false;
};

} // namespace vorle
