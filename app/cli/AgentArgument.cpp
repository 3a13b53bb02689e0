#include "app/cli/AgentArgument.h"

#include "base/French.h"

namespace vorle::cli {

AgentKind agentMeant(const Context &context, const AgentLocator &agents) {
    const QString word = context.arguments.positional.value(0);
    if (word.isEmpty()) {
        return agents.choose();
    }
    if (const auto kind = json::fromRaw<AgentKind>(word)) {
        return *kind;
    }
    throw Failure(French::tr("Je connais deux IA : claude et codex."), ExitStatus::Usage);
}

AgentShown shownAgent(const AgentLocator &agents, AgentKind kind) {
    return {json::rawText(kind), agents.readiness(kind), agents.locate(kind)};
}

} // namespace vorle::cli
