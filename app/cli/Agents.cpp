#include "agents/EngineAgent.h"
#include "app/cli/AgentArgument.h"
#include "app/cli/Handlers.h"
#include "app/labels/AgentLabels.h"
#include "base/French.h"

namespace vorle::cli {

namespace {

struct AgentsShown {
    QString chosen;
    QList<AgentShown> agents;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("chosen", &AgentsShown::chosen),
                          json::field("agents", &AgentsShown::agents));
    }
};

/// "déconnecté (Avec ton abonnement Claude)".
QString stateText(AgentReadiness readiness, AgentKind kind) {
    const QString label = readinessLabel(readiness);
    return readiness == AgentReadiness::SignedOut
               ? QStringLiteral("%1 (%2)").arg(label, signInLabel(kind))
               : label;
}

} // namespace

Task<ExitStatus> agents(Context &context, OnDemand<EngineAgent> agent) {
    const AgentLocator &locator = agent->locator();
    const AgentKind chosen = locator.choose();
    AgentsShown shown;
    shown.chosen = json::rawText(chosen);
    QStringList lines;
    for (const AgentKind kind : {AgentKind::Claude, AgentKind::Codex}) {
        const AgentReadiness readiness = locator.readiness(kind);
        const auto path = locator.locate(kind);
        shown.agents += shownAgent(locator, kind);
        lines += QStringLiteral("%1 %2 : %3%4")
                     .arg(kind == chosen ? QStringLiteral("●") : QStringLiteral("○"))
                     .arg(displayName(kind), stateText(readiness, kind),
                          path ? QStringLiteral(" · ") + *path : QString());
    }
    if (context.arguments.json()) {
        context.console.print(json::encode(shown, json::Style::Pretty));
    } else {
        context.console.print(lines.join(u'\n'));
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
