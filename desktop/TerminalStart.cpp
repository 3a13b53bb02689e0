#include "desktop/TerminalStart.h"

#include "agents/ProcessRunner.h"
#include "agents/TemporaryFiles.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <memory>
#include <system_error>

#include <unistd.h>

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr auto lookInterval = 50ms;
constexpr qint64 maxErrorBytes = 65'536;

using Failure = std::optional<QString>;

Task<Failure> runToItsEnd(TerminalCommand command, std::chrono::milliseconds timeout) {
    ProcessRequest request;
    request.executable = command.program;
    request.arguments = command.arguments;
    request.environment = QProcessEnvironment::systemEnvironment();
    request.workingDirectory = QDir::rootPath(); // the session goes where it belongs
    request.timeout = timeout;
    const ProcessEnd end = co_await runProcess(request);
    co_return end.succeeded() ? Failure() : Failure(end.errorTail);
}

/// What becomes of a terminal, for whoever still looks.
struct Fate {
    bool ended = false;
    bool launched = true;
    bool well = false;
};

/// Starts it and lets it go: its object deletes itself when it ends, and never ends it.
std::shared_ptr<const Fate> release(const TerminalCommand &command, const QString &errorPath) {
    auto fate = std::make_shared<Fate>();
    auto *process = new QProcess;
    process->setProgram(command.program);
    process->setArguments(command.arguments);
    process->setWorkingDirectory(QDir::rootPath());
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(errorPath);
    process->setChildProcessModifier([] { ::setsid(); });
    QObject::connect(process, &QProcess::finished, process,
                     [process, fate](int status, QProcess::ExitStatus how) {
                         fate->ended = true;
                         fate->well = status == 0 && how == QProcess::NormalExit;
                         process->deleteLater();
                     });
    QObject::connect(process, &QProcess::errorOccurred, process,
                     [process, fate](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart) {
                             fate->ended = true;
                             fate->launched = false;
                             process->deleteLater();
                         }
                     });
    process->start();
    return fate;
}

QString readError(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(maxErrorBytes)) : QString();
}

Task<Failure> watchItsStart(TerminalCommand command, QString script,
                            std::chrono::milliseconds patience) {
    const TemporaryFile error(u"vorle-run-", u".err");
    const auto fate = release(command, error.path());
    QElapsedTimer watched;
    watched.start();
    // The terminal's shell takes the script away, and tells nobody.
    while (!fate->ended && QFile::exists(script) && watched.elapsed() < patience.count()) {
        co_await sleepFor(lookInterval);
    }
    if (!fate->launched) {
        throw std::system_error(ENOEXEC, std::generic_category(), command.program.toStdString());
    }
    const bool failed = fate->ended && !fate->well && QFile::exists(script);
    co_return failed ? Failure(readError(error.path())) : Failure();
}

} // namespace

Task<Failure> startTerminal(TerminalCommand command, QString script, TerminalTimeouts patience) {
    return command.life == TerminalCommand::Life::EndsOnceOpen
               ? runToItsEnd(std::move(command), patience.end)
               : watchItsStart(std::move(command), std::move(script), patience.start);
}

} // namespace vorle
