#pragma once

#include "base/Async.h"

#include <atomic>
#include <type_traits>

namespace vorle {

/// How long a folder may take to answer before the user is told that it does not.
inline constexpr std::chrono::milliseconds maxDiskWait{10'000};

/// What a long piece of work tells whoever waits for it, and is told. Any thread.
class DiskPulse {
public:
    /// It goes on: whoever waits starts counting anew.
    void beat() { m_last = Steady::now().time_since_epoch(); }
    /// Nobody waits for the outcome any more: it ends where it may.
    bool isStopped() const { return m_stopped; }

    /// How long ago the last sign of life was; at first, this was made.
    std::chrono::milliseconds silence() const {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            Steady::now().time_since_epoch() - m_last.load());
    }
    void stop() { m_stopped = true; }

private:
    using Steady = std::chrono::steady_clock;
    std::atomic<Steady::duration> m_last = Steady::now().time_since_epoch();
    std::atomic<bool> m_stopped = false;
};

/// Runs `work` on a thread that may be held up: a folder on a disk that is gone can hold a thread
/// for minutes, and those of the thread pool serve everything else. True when it ended without ever
/// being silent for `patience`; else it is left behind, its pulse stopped, to end when it may: what
/// it uses it must own. It must not throw. What is slow takes no other's place for long. Main
/// thread. @throws Cancelled as soon as `cancel` is: it is left then, too
Task<bool> endsOnDisk(std::function<void(DiskPulse &)> work, std::chrono::milliseconds patience,
                      CancelToken cancel = {});

template <class Function>
using DiskResult = typename std::conditional_t<std::is_invocable_v<Function, DiskPulse &>,
                                               std::invoke_result<Function, DiskPulse &>,
                                               std::invoke_result<Function>>::type;

/// What `function` gives, asked of the disk so; nothing where it was silent for `patience`. It may
/// take the DiskPulse. It must not throw (return the failure as a value), must own what it uses,
/// and must not touch main-thread objects. @throws Cancelled
template <class Function>
Task<std::optional<DiskResult<Function>>> onDisk(Function function,
                                                 std::chrono::milliseconds patience = maxDiskWait,
                                                 CancelToken cancel = {}) {
    struct Job {
        Function function;
        std::optional<DiskResult<Function>> result;
    };
    auto job = std::make_shared<Job>(Job{std::move(function), std::nullopt});
    const auto work = [job]([[maybe_unused]] DiskPulse &pulse) {
        if constexpr (std::is_invocable_v<Function, DiskPulse &>) {
            job->result.emplace(job->function(pulse));
        } else {
            job->result.emplace(job->function());
        }
    };
    const bool ended = co_await endsOnDisk(work, patience, std::move(cancel));
    co_return ended ? std::move(job->result) : std::nullopt;
}

/// The same for who cannot wait in a coroutine: holds the caller's thread up for `limit` at most,
/// so let that be short. False when it had not ended by then.
bool endsOnDiskWithin(std::function<void()> work, std::chrono::milliseconds limit);

/// Whether somebody waits for the disk: what ends lets them have their answer first.
bool isDiskAwaited();

} // namespace vorle
