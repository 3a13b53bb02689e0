#include "base/OnDisk.h"

#include <QSemaphore>
#include <QTimer>

#include <atomic>
#include <mutex>

namespace vorle {

namespace {

constexpr int maxAtOnce = 6;
/// So many may hang before the others go without a thread of their own.
constexpr int maxLent = 32;
/// What takes longer may hang. No folder on a disk that answers does.
constexpr std::chrono::milliseconds slow{300};

/// Never taken down: whoever takes a pool down waits for its threads, and one that hangs would keep
/// the program from ending.
QThreadPool &pool() {
    static QThreadPool *threads = [] {
        auto *made = new QThreadPool;
        made->setMaxThreadCount(maxAtOnce);
        return made;
    }();
    return *threads;
}

/// One piece of work, seen by its thread and by whoever waits for it.
struct DiskJob {
    enum class State { Waiting, Running, Ended, GivenUp };

    std::mutex lock;
    State state = State::Waiting;
    bool awaited = true;
    bool lent = false; ///< a place was made for others while it hangs
    std::function<void(DiskPulse &)> work;
    DiskPulse pulse;

    /// On its thread.
    void run(const OneShot &done) {
        {
            const std::lock_guard guard(lock);
            if (state == State::GivenUp) {
                work = nullptr;
                return;
            }
            state = State::Running;
        }
        work(pulse);
        work = nullptr;
        const std::lock_guard guard(lock);
        if (lent) {
            pool().reserveThread();
            --threadsLent;
        }
        state = State::Ended;
        if (awaited) {
            done.fire();
        }
    }
    /// On the main thread: others need not wait for it.
    void lendThread() {
        const std::lock_guard guard(lock);
        if (state == State::Running && !lent && threadsLent < maxLent) {
            ++threadsLent;
            lent = true;
            pool().releaseThread();
        }
    }
    /// On the main thread: whether it ended. If not, nobody waits for it any more.
    bool settle() {
        lendThread();
        const std::lock_guard guard(lock);
        awaited = false;
        if (state == State::Waiting) {
            state = State::GivenUp;
        }
        if (state != State::Ended) {
            pulse.stop();
        }
        return state == State::Ended;
    }

    static inline std::atomic<int> threadsLent = 0;
};

int awaitedJobs = 0; // on the main thread alone

} // namespace

Task<bool> endsOnDisk(std::function<void(DiskPulse &)> work, std::chrono::milliseconds patience,
                      CancelToken cancel) {
    cancel.throwIfCancelled();
    auto job = std::make_shared<DiskJob>();
    job->work = std::move(work);
    OneShot over;
    pool().start([job, over] { job->run(over); });
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&timer, job, over, patience] {
        const auto left = patience - job->pulse.silence();
        left > std::chrono::milliseconds(0) ? timer.start(left) : over.fire();
    });
    timer.start(patience);
    QTimer late;
    late.setSingleShot(true);
    QObject::connect(&late, &QTimer::timeout, &late, [job] { job->lendThread(); });
    late.start(slow);
    const auto registration = cancel.onCancel([over] { over.fire(); });
    ++awaitedJobs;
    co_await over;
    --awaitedJobs;
    const bool ended = job->settle();
    if (!ended) {
        cancel.throwIfCancelled();
    }
    co_return ended;
}

bool endsOnDiskWithin(std::function<void()> work, std::chrono::milliseconds limit) {
    auto job = std::make_shared<DiskJob>();
    auto over = std::make_shared<QSemaphore>();
    job->awaited = false;
    job->work = [work = std::move(work), over](DiskPulse &) {
        work();
        over->release();
    };
    pool().start([job] { job->run(OneShot()); });
    const bool ended = over->tryAcquire(1, static_cast<int>(limit.count()));
    if (!ended) {
        job->settle();
    }
    return ended;
}

bool isDiskAwaited() { return awaitedJobs > 0; }

} // namespace vorle
