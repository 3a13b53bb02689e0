#pragma once

#include "base/Async.h"
#include "base/Cancellation.h"

#include <QString>

#include <chrono>

namespace vorle {

/// The right to change a topics file: one holder at a time over all processes. A lock on an open
/// file beside it ("….lock"), which the system releases when the holder ends, however it ends;
/// the file itself stays. Several names of one file (symbolic links) share one lock. Reading needs
/// no lock. Main thread only.
class StoreLock {
public:
    /// `topicsFile` is TopicStore's; an empty one (a preview) is always free to take.
    explicit StoreLock(const QString &topicsFile);
    StoreLock(const StoreLock &) = delete;
    StoreLock &operator=(const StoreLock &) = delete;
    ~StoreLock();

    bool isHeld() const { return m_held; }
    /// Takes the lock when nobody else holds it.
    /// @throws std::system_error when the lock file cannot be opened
    bool tryLock();
    /// Waits until the lock is held, without holding the thread. The lock must outlive the wait.
    /// @throws std::system_error as tryLock(); Cancelled as soon as `cancel` is
    Task<> acquire(CancelToken cancel = {});
    void release();

private:
    QString m_path;
    int m_descriptor = -1;
    bool m_held = false;
};

} // namespace vorle
