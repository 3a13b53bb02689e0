#include "agents/setup/AgentPackage.h"

#include "agents/ProcessRunner.h"
#include "agents/setup/PackageBefore.h"
#include "agents/setup/RunningNpm.h"
#include "agents/setup/SetupError.h"
#include "agents/setup/WorkFolder.h"
#include "base/Json.h"
#include "base/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <array>
#include <cerrno>
#include <exception>
#include <system_error>
#include <utility>

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr auto installLimit = 1h; ///< over a slow line
constexpr auto patienceWithKept = 30s;
constexpr qint64 roomForAgent = 600'000'000; ///< more than either takes

QString packageOf(AgentKind kind) {
    return kind == AgentKind::Claude ? QStringLiteral("@anthropic-ai/claude-code")
                                     : QStringLiteral("@openai/codex");
}

QString prefixFor(const AgentLocator &agents, const QString &npm) {
    const QString home = agents.environment().home();
    // An agent is run with its own folder first on the PATH: there it finds this Node.
    return npm.startsWith(home + QStringLiteral("/.nvm/"))
               ? QDir::cleanPath(QFileInfo(npm).path() + QStringLiteral("/.."))
               : home + QStringLiteral("/.npm-global");
}

PackageBefore beforeOf(const QString &prefix, AgentKind kind) {
    return {prefix, packageOf(kind), json::rawText(kind)};
}

/// Those of all prefixes that agents may have been installed below, whichever npm did it, where an
/// installation was killed.
QStringList brokenPrefixes(const AgentLocator &agents, AgentKind kind) {
    QStringList prefixes;
    const QStringList folders = agents.folders();
    for (const QString &folder : folders) {
        const QString prefix = prefixFor(agents, folder + QStringLiteral("/npm"));
        const PackageBefore before = beforeOf(prefix, kind);
        if (!prefixes.contains(prefix) && (before.isKept() || before.hasLeftovers())) {
            prefixes += prefix;
        }
    }
    return prefixes;
}

/// What npm says the system refused, by the words that it has for it; 0 for anything else.
int refusalIn(const QString &errors) {
    static constexpr std::array<std::pair<const char *, int>, 4> words{
        {{"ENOSPC", ENOSPC}, {"EDQUOT", EDQUOT}, {"EACCES", EACCES}, {"EROFS", EROFS}}};
    for (const auto &[word, error] : words) {
        if (errors.contains(QStringLiteral("npm error code ") + QLatin1StringView(word)) ||
            errors.contains(QStringLiteral("npm ERR! code ") + QLatin1StringView(word))) {
            return error;
        }
    }
    return 0;
}

std::system_error refused(int error, const QString &path) {
    return {error, std::generic_category(), path.toStdString()};
}

/// npm at work on one agent.
struct Work {
    const AgentLocator &agents;
    AgentKind kind;
    QString prefix;
    QString folder;      ///< to work in
    RunningNpm npm = {}; ///< of an installation

    ProcessRequest request() const {
        ProcessRequest request;
        request.executable = npm.program;
        request.environment = npm.variables;
        request.workingDirectory = folder;
        return request;
    }
    QString program() const { return prefix + QStringLiteral("/bin/") + json::rawText(kind); }
};

enum class Answer { Version, Nothing, Late };

/// Whether the agent runs. npm tells of no failure where the part for this machine did not come (an
/// optional one to it), for want of room or of a network, nor where Node is too old.
Task<Answer> answerOf(Work work, std::chrono::milliseconds patience, CancelToken cancel) {
    ProcessRequest request;
    request.executable = work.program();
    request.arguments = {QStringLiteral("--version")};
    request.timeout = patience;
    // As the desktop starts it, which knows nothing of a terminal's PATH.
    AgentEnvironment desktop = work.agents.environment();
    desktop.variables.remove(QStringLiteral("PATH"));
    request.environment = desktop.childVariables(request.executable);
    request.workingDirectory = work.folder;
    try {
        const ProcessEnd end = co_await runProcess(std::move(request), std::move(cancel));
        co_return end.succeeded() ? Answer::Version : end.timedOut ? Answer::Late : Answer::Nothing;
    } catch (const std::system_error &) {
        co_return Answer::Nothing; // it is not there, or is no program
    }
}

/// The machine's own settings for npm (a company's proxy, say): npm looks for them below the
/// prefix, so that they would be lost with another one. Nothing where there are none.
Task<QStringList> machineSettings(Work work, CancelToken cancel) {
    ProcessRequest npm = work.request();
    npm.arguments = {QStringLiteral("config"), QStringLiteral("get"),
                     QStringLiteral("globalconfig")};
    npm.timeout = 30s;
    const ProcessEnd end = co_await runProcess(std::move(npm), std::move(cancel));
    const QString file = QString::fromUtf8(end.output).trimmed();
    co_return end.succeeded() && QDir::isAbsolutePath(file) && QFileInfo(file).isFile()
        ? QStringList{QStringLiteral("--globalconfig"), file}
        : QStringList();
}

/// The Node that scripts find which look for one as npm and the agents do; empty where none
/// answers.
Task<QString> nodeOf(Work work, CancelToken cancel) {
    ProcessRequest ask = work.request();
    ask.executable = QStringLiteral("/usr/bin/env");
    ask.arguments = {QStringLiteral("node"), QStringLiteral("-p"),
                     QStringLiteral("process.execPath")}; // "node" may be what chooses one
    ask.timeout = 30s;
    const ProcessEnd end = co_await runProcess(std::move(ask), std::move(cancel));
    const QString node = QString::fromUtf8(end.output).trimmed();
    co_return end.succeeded() && QDir::isAbsolutePath(node) && QFileInfo(node).isExecutable()
        ? node
        : QString();
}

/// Agents that are scripts for Node look for one on the PATH. Theirs may be on a terminal's alone,
/// so it is noted where each of them looks last.
Task<> noteNode(Work work, CancelToken cancel) {
    const QStringList usual{QStringLiteral("/usr/bin"), QStringLiteral("/bin"),
                            QStringLiteral("/usr/local/bin"), QStringLiteral("/opt/homebrew/bin"),
                            work.prefix + QStringLiteral("/bin")};
    const QString noted = work.agents.environment().nodeFolder() + QStringLiteral("/node");
    const QString node = co_await nodeOf(work, std::move(cancel));
    if (!node.isEmpty() && node != noted && !usual.contains(QFileInfo(node).path())) {
        QDir().mkpath(QFileInfo(noted).path());
        QFile::remove(noted); // the one of another installation
        QFile::link(node, noted);
    }
}

Task<> install(Work work, Installed &installed, std::chrono::milliseconds patience,
               CancelToken cancel) {
    ProcessRequest request = work.request();
    request.arguments = {QStringLiteral("install"), QStringLiteral("-g"),
                         QStringLiteral("--prefix"), work.prefix, QStringLiteral("--no-fund"),
                         QStringLiteral("--no-audit"), QStringLiteral("--no-update-notifier"),
                         QStringLiteral("--loglevel"), QStringLiteral("error"),
                         // Whatever the person's own settings say: the part for this machine is an
                         // optional one, and Claude Code puts its program there by a script.
                         QStringLiteral("--include=optional"),
                         QStringLiteral("--ignore-scripts=false"),
                         QStringLiteral("--allow-scripts=") + packageOf(work.kind)};
    request.arguments += co_await machineSettings(work, cancel);
    request.arguments += packageOf(work.kind);
    request.timeout = installLimit;
    const ProcessEnd end = co_await runProcess(std::move(request), cancel);
    if (const int error = refusalIn(end.errorTail); !end.succeeded() && error != 0) {
        throw refused(error, work.prefix);
    }
    const auto found = work.agents.locate(work.kind);
    if (!end.succeeded() || !found) {
        throw SetupError::stepFailed(QStringLiteral("npm install"));
    }
    co_await noteNode(work, cancel);
    const Answer answer = co_await answerOf(work, patience, cancel);
    const QStorageInfo disk(work.agents.environment().home());
    if (answer == Answer::Nothing && disk.isValid() && disk.bytesAvailable() < roomForAgent) {
        throw refused(ENOSPC, work.prefix);
    }
    if (answer == Answer::Nothing) {
        throw SetupError::stepFailed(QStringLiteral("npm install"));
    }
    const bool isUsed =
        QFileInfo(*found).canonicalFilePath() == QFileInfo(work.program()).canonicalFilePath();
    installed = {!isUsed                  ? InstallEnd::Hidden
                 : answer == Answer::Late ? InstallEnd::Silent
                                          : InstallEnd::Checked,
                 work.program()};
}

} // namespace

Task<Installed> installPackage(const AgentLocator &agents, AgentKind kind, CancelToken cancel,
                               std::chrono::milliseconds patience) {
    const WorkFolder folder;
    const RunningNpm npm = co_await runningNpm(agents, folder.path(), cancel);
    const Work work{agents, kind, prefixFor(agents, npm.program), folder.path(), npm};
    const PackageBefore before = beforeOf(work.prefix, kind);
    co_await onPool([before] {
        before.keep();
        return true;
    });
    Installed installed;
    std::exception_ptr fault;
    co_await settle(install(work, installed, patience, std::move(cancel)), fault);
    co_await onPool([before, isGood = !fault] {
        try {
            if (isGood) {
                before.forget();
            } else {
                before.putBack();
            }
        } catch (const std::system_error &error) { // the next start tries again
            logLine(QStringLiteral("installing: ") + QString::fromLocal8Bit(error.what()));
        }
        return true;
    });
    if (fault) {
        std::rethrow_exception(fault);
    }
    co_return installed;
}

bool isInstallationBroken(const AgentLocator &agents, AgentKind kind) {
    return !brokenPrefixes(agents, kind).isEmpty();
}

Task<bool> mendInstallation(const AgentLocator &agents, AgentKind kind, CancelToken cancel) {
    bool isMended = false;
    const QStringList prefixes = brokenPrefixes(agents, kind);
    for (const QString &prefix : prefixes) {
        const PackageBefore before = beforeOf(prefix, kind);
        if (!before.isKept()) {
            co_await onPool([before] {
                before.clearLeftovers();
                return true;
            });
            continue;
        }
        const WorkFolder folder;
        // The person may have put it right by themselves since.
        const Answer answer =
            co_await answerOf({agents, kind, prefix, folder.path()}, patienceWithKept, cancel);
        if (answer != Answer::Late) { // slow, it tells nothing
            isMended = co_await onPool([before, answer] {
                answer == Answer::Version ? before.forget() : before.putBack();
                return true;
            });
        }
    }
    co_return isMended;
}

} // namespace vorle
