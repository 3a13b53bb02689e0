#pragma once

#include "app/cli/Handlers.h"

#include <optional>

namespace vorle::cli {

/// What came of asking the app to run a command.
struct Forwarded {
    std::optional<ExitStatus> status; ///< the command's; nothing when it was not run
    bool waits = false;               ///< there is an app, which waits for its topics itself
};

/// Has the app that runs on that topics file run the command, shows what it says, and gives its
/// status; nothing when no app answers, and then it was not asked either. A Ctrl-C is handed on,
/// and the app's answer to it waited for.
/// @throws Failure when the app ended before the command did, Cancelled before the app was asked
Task<std::optional<ExitStatus>> forwardCommand(Context &context, QString topicsFile);
/// The same, and why it was not run.
Task<Forwarded> askApp(Context &context, QString topicsFile);

} // namespace vorle::cli
