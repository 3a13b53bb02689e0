#pragma once

#include "agents/AgentLocator.h"
#include "base/Async.h"

#include <chrono>

namespace vorle {

/// How an installation ended that did.
enum class InstallEnd {
    Checked, ///< by its signature, by its own installer, or by its telling its version
    Silent,  ///< it is there, and did not answer in time; a slow machine is no reason to remove it
    Hidden   ///< it works, and another program of its name is found before it, and used
};

struct Installed {
    InstallEnd end = InstallEnd::Checked;
    QString program; ///< what was installed, by its path
};

/// Installs the agent's own npm package into ".npm-global" of the home, or beside the Node that nvm
/// installed where npm is that one's: where it is looked for, and without any right over the
/// machine. npm verifies what it downloads before anything of it runs. Past an hour, or stopped,
/// npm and all that it started are ended. The agent has `patience` to tell its version then.
/// Whatever fails, and a stop at any moment, leaves all as it was before: the agent that was there,
/// or none. One at a time below a prefix, over all processes: the caller sees to that.
/// @throws SetupError: no npm, none that runs, or "npm install" failed
/// @throws std::system_error where the disk or its rights refuse it, or npm cannot be started
/// @throws Cancelled
Task<Installed> installPackage(const AgentLocator &agents, AgentKind kind, CancelToken cancel,
                               std::chrono::milliseconds patience = std::chrono::minutes(1));

/// Whether an installation of that agent's package was killed, whichever npm it was done by, and
/// whether that one is still there. Reads folders.
bool isInstallationBroken(const AgentLocator &agents, AgentKind kind);

/// After that: all as it was before it. False where there is nothing to mend, or what is there
/// takes too long to say whether it works. One at a time, too.
/// @throws std::system_error, Cancelled: what is kept stays so
Task<bool> mendInstallation(const AgentLocator &agents, AgentKind kind, CancelToken cancel = {});

} // namespace vorle
