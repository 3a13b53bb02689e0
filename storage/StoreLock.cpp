#include "storage/StoreLock.h"

#include "base/MainThread.h"

namespace vorle {

namespace {

QString suffixOf(StoreLock::Right right) {
    return right == StoreLock::Right::BeTheApp ? QStringLiteral(".app.lock")
                                               : QStringLiteral(".lock");
}

} // namespace

StoreLock::StoreLock(const QString &topicsFile, Right right)
    : m_lock(topicsFile, suffixOf(right)) {}

bool StoreLock::tryLock() {
    requireMainThread("vorle/StoreLock");
    return m_lock.tryLock();
}

Task<bool> StoreLock::taken(std::function<Task<bool>()> isInVain, CancelToken cancel) {
    constexpr std::chrono::milliseconds pause(50);
    while (!tryLock()) {
        if (co_await isInVain()) {
            co_return false;
        }
        co_await sleepFor(pause, cancel);
    }
    co_return true;
}

void StoreLock::release() { m_lock.release(); }

} // namespace vorle
