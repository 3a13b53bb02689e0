#pragma once

#include "agents/AgentLocator.h"
#include "app/cli/Command.h"
#include "base/Json.h"

namespace vorle::cli {

/// The agent that the first word names; without one the agent that is used.
/// @throws Failure (wrong usage) for any other word
AgentKind agentMeant(const Context &context, const AgentLocator &agents);

/// An agent as machines are told of it.
struct AgentShown {
    QString name;
    AgentReadiness state = AgentReadiness::Missing;
    std::optional<QString> path;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("name", &AgentShown::name),
                          json::field("state", &AgentShown::state),
                          json::field("path", &AgentShown::path));
    }
};
AgentShown shownAgent(const AgentLocator &agents, AgentKind kind);

} // namespace vorle::cli
