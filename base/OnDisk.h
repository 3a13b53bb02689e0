#pragma once

#include "base/Async.h"

namespace vorle {

/// How long a folder may take to answer before the user is told that it does not.
inline constexpr std::chrono::milliseconds maxDiskWait{10'000};

/// Runs `work` on a thread that may be held up: a folder on a disk that is gone can hold a thread
/// for minutes, and those of the thread pool serve everything else. True when it ended within
/// `limit`; else it is left behind, to end when it may: what it uses it must own. It must not
/// throw. What is slow takes no other's place for long. Main thread.
Task<bool> endsOnDisk(std::function<void()> work, std::chrono::milliseconds limit);

/// What `function` gives, asked of the disk so; nothing past `limit`. It must not throw (return the
/// failure as a value), must own what it uses, and must not touch main-thread objects.
template <class Function, class Result = std::invoke_result_t<Function>>
Task<std::optional<Result>> onDisk(Function function,
                                   std::chrono::milliseconds limit = maxDiskWait) {
    struct Job {
        Function function;
        std::optional<Result> result;
    };
    auto job = std::make_shared<Job>(Job{std::move(function), std::nullopt});
    const bool ended = co_await endsOnDisk([job] { job->result.emplace(job->function()); }, limit);
    co_return ended ? std::move(job->result) : std::nullopt;
}

/// The same for who cannot wait in a coroutine: holds the caller's thread up for `limit` at most,
/// so let that be short. False when it had not ended by then.
bool endsOnDiskWithin(std::function<void()> work, std::chrono::milliseconds limit);

/// Whether somebody waits for the disk: what ends lets them have their answer first.
bool isDiskAwaited();

} // namespace vorle
