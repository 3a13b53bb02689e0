#pragma once

#include "app/cli/Handlers.h"

#include <exception>
#include <optional>

namespace vorle::cli {

/// Thrown where a command finds that the running app holds the topics, once the app has run it
/// instead. It is no failure: nothing is left to do but end with its status.
class CommandForwarded final : public std::exception {
public:
    explicit CommandForwarded(ExitStatus status) : m_status(status) {}

    ExitStatus status() const { return m_status; }
    const char *what() const noexcept override { return "handed over to the running app"; }

private:
    ExitStatus m_status;
};

/// Has the app that runs on that topics file run the command, shows what it says, and gives its
/// status; nothing when no app answers, and then it was not asked either. A Ctrl-C is handed on,
/// and the app's answer to it waited for.
/// @throws Failure when the app ended before the command did, Cancelled before the app was asked
Task<std::optional<ExitStatus>> forwardCommand(Context &context, QString topicsFile);

} // namespace vorle::cli
