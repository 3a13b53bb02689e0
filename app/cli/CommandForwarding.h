#pragma once

#include "app/cli/Handlers.h"

#include <optional>

namespace vorle::cli {

/// Has the app that runs on that topics file run the command, shows what it says, and gives its
/// status; nothing when no app answers, and then it was not asked either. A Ctrl-C is handed on,
/// and the app's answer to it waited for.
/// @throws Failure when the app ended before the command did, Cancelled before the app was asked
Task<std::optional<ExitStatus>> forwardCommand(Context &context, QString topicsFile);

} // namespace vorle::cli
