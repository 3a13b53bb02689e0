#pragma once

#include "agents/AgentLocator.h"
#include "base/Async.h"

#include <chrono>

namespace vorle {

/// The npm that would be used: of the PATH, else of where agents are looked for (a Node that nvm
/// installed is on no desktop's PATH). Nothing where there is none. Reads folders.
std::optional<QString> npmProgram(const AgentLocator &agents);

/// How an installation ended that did.
enum class Installed {
    Checked, ///< by its signature, by its own installer, or by its telling its version
    Silent,  ///< it is there, and did not answer in time; a slow machine is no reason to remove it
    Hidden   ///< it works, and another program of its name is found before it, and used
};

/// Installs the agent's own npm package into ".npm-global" of the home, or beside the Node that nvm
/// installed where npm is that one's: where it is looked for, and without any right over the
/// machine. npm verifies what it downloads before anything of it runs. Past an hour, or stopped,
/// npm and all that it started are ended. The agent has `patience` to tell its version then.
/// Whatever fails, and a stop at any moment, leaves all as it was before: the agent that was there,
/// or none. One at a time below a prefix, over all processes: the caller sees to that.
/// @throws SetupError: no npm, or "npm install" failed
/// @throws std::system_error where the disk or its rights refuse it, or npm cannot be started
/// @throws Cancelled
Task<Installed> installPackage(const AgentLocator &agents, AgentKind kind, CancelToken cancel,
                               std::chrono::milliseconds patience = std::chrono::minutes(1));

/// Whether an installation of that agent's package was killed. Reads folders.
bool isInstallationBroken(const AgentLocator &agents, AgentKind kind);

/// After that: all as it was before it. One at a time, too. @throws std::system_error
Task<> mendInstallation(const AgentLocator &agents, AgentKind kind);

} // namespace vorle
