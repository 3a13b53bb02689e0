#pragma once

#include "base/Async.h"

#include <chrono>
#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>

namespace vorle::test {

/// Runs the event loop until `done()` holds. @throws std::runtime_error past the deadline.
void spinUntil(const std::function<bool()> &done,
               std::chrono::milliseconds deadline = std::chrono::seconds(30));

/// Runs the event loop until the task ends; gives its value or rethrows what it threw.
template <class T>
T waitFor(Task<T> task, std::chrono::milliseconds deadline = std::chrono::seconds(30)) {
    struct Outcome {
        bool ended = false;
        std::optional<T> value;
        std::exception_ptr error;
    };
    auto outcome = std::make_shared<Outcome>();
    auto follow = [](Task<T> followed, std::shared_ptr<Outcome> out) -> Task<> {
        try {
            out->value.emplace(co_await followed);
        } catch (...) {
            out->error = std::current_exception();
        }
        out->ended = true;
    };
    const auto following = follow(std::move(task), outcome);
    spinUntil([&] { return outcome->ended; }, deadline);
    if (outcome->error) {
        std::rethrow_exception(outcome->error);
    }
    return std::move(*outcome->value);
}

void waitFor(Task<> task, std::chrono::milliseconds deadline = std::chrono::seconds(30));

} // namespace vorle::test
