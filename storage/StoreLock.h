#pragma once

#include "base/Async.h"
#include "storage/FileLock.h"

#include <QString>

#include <functional>

namespace vorle {

/// A right that one process at a time has over a topics file (see FileLock). Reading needs no lock.
/// Main thread only.
class StoreLock {
public:
    enum class Right {
        ChangeTopics, ///< the app has it while it is open, a command while it works
        BeTheApp      ///< the app's alone, taken before the other and kept as long as it runs
    };

    /// `topicsFile` is TopicStore's; an empty one (a preview) is always free to take.
    explicit StoreLock(const QString &topicsFile, Right right = Right::ChangeTopics);
    StoreLock(const StoreLock &) = delete;
    StoreLock &operator=(const StoreLock &) = delete;
    ~StoreLock() = default;

    bool isHeld() const { return m_lock.isHeld(); }
    /// Takes the lock when nobody else holds it.
    /// @throws std::system_error when the lock file cannot be opened
    bool tryLock();
    /// Takes the lock once its holder lets it go: the system tells nobody when that is, so it is
    /// tried again and again. Each time it is still held `isInVain` is asked, and may end the wait.
    /// Gives whether it was taken.
    /// @throws std::system_error as tryLock(), Cancelled, what `isInVain` does
    Task<bool> taken(std::function<Task<bool>()> isInVain, CancelToken cancel);
    void release();
    /// Whether another process has that right at this moment. Asks without taking it.
    /// @throws std::system_error when the lock file cannot be opened
    bool isHeldElsewhere() const { return m_lock.isHeldElsewhere(); }

private:
    FileLock m_lock;
};

} // namespace vorle
