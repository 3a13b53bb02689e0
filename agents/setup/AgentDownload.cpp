#include "agents/setup/AgentDownload.h"

#include "agents/ProcessRunner.h"
#include "agents/setup/Placement.h"
#include "agents/setup/SetupError.h"
#include "agents/setup/WorkFolder.h"
#include "platform/SignatureCheck.h"

#include <QFile>

#include <sys/stat.h>

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr auto unpackingLimit = 5min;
constexpr auto scriptLimit = 30min; ///< it downloads too

/// Whether nothing but a plain file has that path, and no other name leads to it: an archive may
/// hold links.
bool isPlainFile(const QString &path) {
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_nlink == 1;
}

bool isScript(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(2) == "#!";
}

} // namespace

AgentSources AgentSources::forProcessor(const QString &name) {
    AgentSources sources;
    if (name == u"x86_64") {
        sources.codexBuild = QStringLiteral("codex-x86_64-apple-darwin");
    }
    return sources;
}

QString codexRequirement() {
    return QStringLiteral("anchor apple generic and certificate leaf[subject.OU] = \"2DC432GLL2\"");
}

Task<> AgentDownload::installCodex(TellProgress progress, CancelToken cancel) const {
    const WorkFolder work;
    const QString archive = work.file(QStringLiteral("codex.tar.gz"));
    const QUrl address =
        sources.codexReleases.resolved(QUrl(sources.codexBuild + QStringLiteral(".tar.gz")));
    co_await downloader.fetch(address, archive, std::move(progress), cancel);

    ProcessRequest unpack;
    unpack.executable = sources.tar;
    // The program alone: nothing else that the archive holds comes out of it.
    unpack.arguments = {QStringLiteral("-xzf"), archive, sources.codexBuild};
    unpack.timeout = unpackingLimit;
    unpack.maxFileBytes = sources.maxProgram;
    unpack.environment = agents.environment().childVariables(sources.tar);
    unpack.workingDirectory = work.path();
    const QString program = work.file(sources.codexBuild);
    if (!(co_await runProcess(std::move(unpack), cancel)).succeeded() || !isPlainFile(program)) {
        throw SetupError::stepFailed(QStringLiteral("tar"));
    }
    const bool isSigned = co_await onPool(
        [&check = signatures, program] { return check.meets(program, codexRequirement()); });
    if (!isSigned) {
        throw SetupError::notSigned();
    }
    cancel.throwIfCancelled();
    co_await onPool([program, home = agents.environment().home()] {
        placeExecutable(program, home + QStringLiteral("/.local/bin"), QStringLiteral("codex"));
        return true;
    });
}

Task<> AgentDownload::installClaude(TellProgress progress, CancelToken cancel) const {
    const WorkFolder work;
    const QString script = work.file(QStringLiteral("install.sh"));
    // It is short: what takes its time is what it does.
    co_await downloader.fetch(sources.claudeScript, script, {}, cancel);
    if (!isScript(script)) {
        throw SetupError::download(); // a network's own page, say
    }
    if (progress) {
        progress({});
    }
    ProcessRequest run;
    run.executable = sources.bash;
    run.arguments = {script};
    run.timeout = scriptLimit;
    run.environment = agents.environment().childVariables(sources.bash);
    run.environment.insert(
        QStringLiteral("PATH"),
        QStringLiteral("/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin"));
    run.workingDirectory = work.path();
    const ProcessEnd end = co_await runProcess(std::move(run), cancel);
    if (!end.succeeded() || !agents.locate(AgentKind::Claude)) {
        throw SetupError::stepFailed(QStringLiteral("install.sh"));
    }
}

} // namespace vorle
