#include "agents/setup/AgentSetup.h"
#include "app/cli/AgentArgument.h"
#include "app/cli/Handlers.h"
#include "app/labels/AgentLabels.h"
#include "base/French.h"
#include "base/SystemErrorText.h"

namespace vorle::cli {

namespace {

/// The agent that is used from now on, and what was installed: another program may be found first.
struct InstalledShown {
    QString name;
    AgentReadiness state = AgentReadiness::Missing;
    std::optional<QString> path;
    QString installed;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("name", &InstalledShown::name),
                          json::field("state", &InstalledShown::state),
                          json::field("path", &InstalledShown::path),
                          json::field("installed", &InstalledShown::installed));
    }
};

/// @throws Failure (French), Cancelled
Task<Installed> install(Context &context, const AgentSetup &setup, AgentKind kind) {
    const auto tell = [&console = context.console, kind](const DownloadProgress &progress) {
        const int percent = installPercent(progress);
        console.progress(French::tr("Installation de %1").arg(displayName(kind)),
                         std::max(percent, 0), 100,
                         percent < 0 ? QString() : French::tr("%1\u202F%").arg(percent));
    };
    tell({});
    QString problem;
    Installed installed;
    try {
        installed = co_await setup.install(kind, tell, context.cancel);
    } catch (const SetupError &error) {
        problem = installFailureText(error, kind);
    } catch (const std::system_error &error) {
        problem = installFailureText() + u'\n' + systemRefusalText(error);
    }
    context.console.endProgress();
    if (!problem.isEmpty()) {
        throw Failure(problem);
    }
    co_return installed;
}

} // namespace

Task<ExitStatus> installer(Context &context, OnDemand<AgentSetup> setup) {
    const AgentLocator &agents = setup->agents();
    const AgentKind kind = agentMeant(context, agents);
    const Installed installed = co_await install(context, *setup, kind);
    const AgentShown shown = shownAgent(agents, kind);
    const QString doubt = installDoubtText(installed.end, kind, shown.path.value_or(QString()));
    if (context.arguments.json()) {
        const InstalledShown all{shown.name, shown.state, shown.path, installed.program};
        context.console.print(json::encode(all, json::Style::Pretty));
    } else if (installed.end != InstallEnd::Hidden) {
        context.console.print(French::tr("%1 est installé : %2")
                                  .arg(displayName(kind), shown.path.value_or(QString())));
    }
    if (!doubt.isEmpty()) {
        context.console.say(doubt);
    }
    if (shown.state == AgentReadiness::SignedOut) {
        context.console.say(French::tr("Pour te connecter : vorle connecter %1").arg(shown.name));
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
