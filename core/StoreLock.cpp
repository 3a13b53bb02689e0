#include "core/StoreLock.h"

#include "base/MainThread.h"

#include <chrono>

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

Task<> StoreLock::acquire(CancelToken cancel) {
    constexpr std::chrono::milliseconds pause(50);
    while (!tryLock()) {
        co_await sleepFor(pause, cancel);
    }
}

void StoreLock::release() { m_lock.release(); }

} // namespace vorle
