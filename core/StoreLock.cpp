#include "core/StoreLock.h"

#include "base/MainThread.h"
#include "core/DurableFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace vorle {

namespace {

QString suffixOf(StoreLock::Right right) {
    return right == StoreLock::Right::BeTheApp ? QStringLiteral(".app.lock")
                                               : QStringLiteral(".lock");
}

} // namespace

StoreLock::StoreLock(const QString &topicsFile, Right right)
    : m_path(topicsFile.isEmpty() ? QString() : linkTarget(topicsFile) + suffixOf(right)) {}

StoreLock::~StoreLock() { release(); }

bool StoreLock::tryLock() {
    requireMainThread("vorle/StoreLock");
    if (m_held || m_path.isEmpty()) {
        m_held = true;
        return true;
    }
    if (m_descriptor < 0) {
        // Closed in child processes: an agent that outlives us must not keep the lock.
        m_descriptor = ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC,
                              S_IRUSR | S_IWUSR);
        if (m_descriptor < 0) {
            throw std::system_error(errno, std::generic_category(), "open");
        }
    }
    int result = 0;
    do {
        result = ::flock(m_descriptor, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0 && errno != EWOULDBLOCK) {
        throw std::system_error(errno, std::generic_category(), "flock");
    }
    m_held = result == 0;
    return m_held;
}

Task<> StoreLock::acquire(CancelToken cancel) {
    constexpr std::chrono::milliseconds pause(50);
    while (!tryLock()) {
        co_await sleepFor(pause, cancel);
    }
}

void StoreLock::release() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor); // lets the lock go
    }
    m_descriptor = -1;
    m_held = false;
}

} // namespace vorle
