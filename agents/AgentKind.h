#pragma once

#include <QString>

#include <array>
#include <string_view>

namespace vorle {

/// The AI command lines served. The raw strings are what the settings and the environment hold,
/// and the executables' names.
enum class AgentKind { Claude, Codex };

constexpr std::array<std::string_view, 2> rawStrings(AgentKind) { return {"claude", "codex"}; }

/// "Claude Code" or "Codex".
QString displayName(AgentKind kind);
/// What the agent's account is called: "Avec ton abonnement Claude", "Avec ton compte ChatGPT".
QString signInLabel(AgentKind kind);
/// The web chat of the same vendor: "Claude" or "ChatGPT".
QString chatName(AgentKind kind);

} // namespace vorle
