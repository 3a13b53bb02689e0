#pragma once

#include "agents/AgentLocator.h"
#include "base/Async.h"

namespace vorle {

/// The npm that would be used: of the PATH, else of where agents are looked for (a Node that nvm
/// installed is on no desktop's PATH). Nothing where there is none. Reads folders.
std::optional<QString> npmProgram(const AgentLocator &agents);

/// Installs the agent's own npm package into ".npm-global" of the home, or beside the Node that nvm
/// installed where npm is that one's: where it is looked for, and without any right over the
/// machine. npm verifies what it downloads before anything of it runs. Past 20 minutes, or stopped,
/// npm and all that it started are ended.
/// The agent has to tell its version then: what does not is taken away again.
/// @throws SetupError: no npm, or "npm install" failed
/// @throws std::system_error where the disk or its rights refuse it, or npm cannot be started
/// @throws Cancelled
Task<> installPackage(const AgentLocator &agents, AgentKind kind, CancelToken cancel);

} // namespace vorle
