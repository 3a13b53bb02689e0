#include "agents/setup/AgentPackage.h"

#include "agents/ProcessRunner.h"
#include "agents/setup/SetupError.h"
#include "agents/setup/WorkFolder.h"
#include "base/Json.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr auto installLimit = 20min;
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

/// Whether the agent runs. npm tells of no failure where the part for this machine did not come (an
/// optional one to it), for want of room or of a network, nor where Node is too old.
Task<bool> answers(const AgentLocator &agents, QString program, QString folder,
                   CancelToken cancel) {
    ProcessRequest request;
    request.executable = program;
    request.arguments = {QStringLiteral("--version")};
    request.timeout = 60s;
    request.environment = agents.environment().childVariables(program);
    request.workingDirectory = folder;
    try {
        co_return (co_await runProcess(std::move(request), std::move(cancel))).succeeded();
    } catch (const std::system_error &) {
        co_return false; // it is not there, or is no program
    }
}

/// The machine's own settings for npm (a company's proxy, say): npm looks for them below the
/// prefix, so that they would be lost with another one. Nothing where there are none.
Task<QStringList> machineSettings(ProcessRequest npm, CancelToken cancel) {
    npm.arguments = {QStringLiteral("config"), QStringLiteral("get"),
                     QStringLiteral("globalconfig")};
    npm.timeout = 30s;
    const ProcessEnd end = co_await runProcess(std::move(npm), std::move(cancel));
    const QString file = QString::fromUtf8(end.output).trimmed();
    co_return end.succeeded() && QDir::isAbsolutePath(file) && QFileInfo(file).isFile()
        ? QStringList{QStringLiteral("--globalconfig"), file}
        : QStringList();
}

} // namespace

std::optional<QString> npmProgram(const AgentLocator &agents) {
    QStringList folders = agents.environment()
                              .variables.value(QStringLiteral("PATH"))
                              .split(u':', Qt::SkipEmptyParts);
    folders += agents.folders();
    for (const QString &folder : std::as_const(folders)) {
        const QFileInfo file(folder + QStringLiteral("/npm"));
        if (QDir::isAbsolutePath(folder) && file.isFile() && file.isExecutable()) {
            return file.filePath();
        }
    }
    return std::nullopt;
}

Task<> installPackage(const AgentLocator &agents, AgentKind kind, CancelToken cancel) {
    const auto npm = npmProgram(agents);
    if (!npm) {
        throw SetupError::noNpm();
    }
    const WorkFolder work;
    const QString prefix = prefixFor(agents, *npm);
    ProcessRequest request;
    request.executable = *npm;
    request.environment = agents.environment().childVariables(*npm);
    request.workingDirectory = work.path();
    const QStringList settings = co_await machineSettings(request, cancel);
    request.timeout = installLimit;
    request.arguments = {QStringLiteral("install"),
                         QStringLiteral("-g"),
                         QStringLiteral("--prefix"),
                         prefix,
                         QStringLiteral("--no-fund"),
                         QStringLiteral("--no-audit"),
                         QStringLiteral("--no-update-notifier"),
                         QStringLiteral("--loglevel"),
                         QStringLiteral("error")};
    request.arguments += settings;
    request.arguments += packageOf(kind);
    const ProcessEnd end = co_await runProcess(request, cancel);
    if (const int error = refusalIn(end.errorTail); !end.succeeded() && error != 0) {
        throw refused(error, prefix);
    }
    if (!end.succeeded() || !agents.locate(kind)) {
        throw SetupError::stepFailed(QStringLiteral("npm install"));
    }
    if (co_await answers(agents, prefix + QStringLiteral("/bin/") + json::rawText(kind),
                         work.path(), cancel)) {
        co_return;
    }
    // What is half there would be taken for an agent.
    request.arguments[0] = QStringLiteral("uninstall");
    co_await runProcess(std::move(request), cancel);
    if (QStorageInfo(prefix).bytesAvailable() < roomForAgent) {
        throw refused(ENOSPC, prefix);
    }
    throw SetupError::stepFailed(QStringLiteral("npm install"));
}

} // namespace vorle
