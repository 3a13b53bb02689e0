#pragma once

#include "agents/AgentLocator.h"
#include "base/Async.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace vorle {

/// Every npm that can be found, in the order of use: those of the PATH, then those where agents are
/// looked for (a Node that nvm installed is on no desktop's PATH). Reads folders.
QStringList npmPrograms(const AgentLocator &agents);

/// An npm that runs on this machine, with the variables that it does so by.
struct RunningNpm {
    QString program;
    QProcessEnvironment variables;
};

/// The first npm that tells its version: one that was left behind by a Node that is gone, or that
/// finds a Node which does not run, is passed over, after it was tried with every Node there is.
/// Works in `folder`.
/// @throws SetupError: no npm, or none that runs
/// @throws Cancelled
Task<RunningNpm> runningNpm(const AgentLocator &agents, QString folder, CancelToken cancel);

} // namespace vorle
