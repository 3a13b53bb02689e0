#pragma once

#include <QStringList>

namespace vorle {
class InstalledApps;
class SharedContainer;
class SignatureCheck;
struct UpdateConfig;
} // namespace vorle

namespace vorle::cli {

/// Runs the command that `words` (without the program's name) ask for, on the event loop of the
/// application object that exists, and gives the exit status: 0 done, 1 failed (the message in
/// French on standard error), 2 wrong usage. `container` and `signatures` may be null.
int runCommandLine(const QStringList &words, const InstalledApps &installedApps,
                   const SharedContainer *container, const SignatureCheck *signatures,
                   const UpdateConfig &updates);

} // namespace vorle::cli
