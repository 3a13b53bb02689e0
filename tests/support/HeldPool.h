#pragma once

#include <QSemaphore>
#include <QThreadPool>

#include <memory>

namespace vorle::test {

/// Keeps every thread of the pool busy while it lives, as a disk that does not answer would: what
/// comes after it waits.
class HeldPool {
public:
    HeldPool() {
        QThreadPool &pool = *QThreadPool::globalInstance();
        for (int thread = 0; thread < pool.maxThreadCount(); ++thread) {
            pool.start([wait = m_wait] { wait->acquire(); });
        }
    }
    ~HeldPool() { m_wait->release(QThreadPool::globalInstance()->maxThreadCount()); }
    HeldPool(const HeldPool &) = delete;
    HeldPool &operator=(const HeldPool &) = delete;

private:
    std::shared_ptr<QSemaphore> m_wait = std::make_shared<QSemaphore>();
};

} // namespace vorle::test
