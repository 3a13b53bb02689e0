#pragma once

#include "base/Async.h"
#include "platform/Terminals.h"

#include <QString>

#include <chrono>
#include <optional>

namespace vorle {

/// How long a terminal is watched before it counts as open, or as failed.
struct TerminalTimeouts {
    std::chrono::milliseconds end = std::chrono::seconds(30);  ///< of a command that ends
    std::chrono::milliseconds start = std::chrono::seconds(5); ///< of one that may last
};

/// Runs the command and gives nothing once the window is open, else what the command said of it,
/// which may be empty. A command that lasts as a window is one of its own session, is not ended
/// with this process, and counts as open as soon as `script` is gone (the script removes itself
/// first), when it ends well, or when it is still there after `patience.start`. Main thread.
/// @throws std::system_error when it cannot be launched, or a temporary file not be made
Task<std::optional<QString>> startTerminal(TerminalCommand command, QString script,
                                           TerminalTimeouts patience = {});

} // namespace vorle
