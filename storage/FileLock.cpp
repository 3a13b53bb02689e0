#include "storage/FileLock.h"

#include "storage/DurableFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace vorle {

namespace {

/// Closed in child processes: an agent that outlives us must not keep the lock.
Descriptor opened(const QString &path) {
    constexpr mode_t mode = S_IRUSR | S_IWUSR;
    const QByteArray name = QFile::encodeName(path);
    Descriptor fresh(::open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (fresh.isOpen()) {
        ::fchmod(fresh.number(), mode); // the next process must be able to open it
        return fresh;
    }
    if (errno == EEXIST) {
        // A lock needs no right to write but over a network.
        for (const int access : {O_RDWR, O_RDONLY}) {
            Descriptor present(::open(name.constData(), access | O_NONBLOCK | O_CLOEXEC));
            if (present.isOpen()) {
                return present;
            }
        }
    }
    throw std::system_error(errno, std::generic_category(), path.toStdString());
}

} // namespace

FileLock::FileLock(const QString &file, const QString &ending)
    : m_path(file.isEmpty() ? QString() : linkTarget(file) + ending) {}

bool FileLock::tryLock() {
    if (m_held || m_path.isEmpty()) {
        m_held = true;
        return true;
    }
    if (!m_descriptor.isOpen()) {
        m_descriptor = opened(m_path);
    }
    int result = 0;
    do {
        result = ::flock(m_descriptor.number(), LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0 && errno != EWOULDBLOCK) {
        throw std::system_error(errno, std::generic_category(), m_path.toStdString());
    }
    m_held = result == 0;
    return m_held;
}

bool FileLock::lockWithin(std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds pause(2);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!tryLock()) { // the system tells nobody when a lock is let go
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return true;
}

bool FileLock::isHeldElsewhere() const {
    if (m_held || m_path.isEmpty()) {
        return false;
    }
    const auto fail = [this] {
        throw std::system_error(errno, std::generic_category(), m_path.toStdString());
    };
    const Descriptor file(
        ::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) {
        if (errno != ENOENT && errno != ENOTDIR) {
            fail();
        }
        return false;
    }
    int result = 0;
    do {
        result = ::flock(file.number(), LOCK_SH | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0 && errno != EWOULDBLOCK) {
        fail();
    }
    return result != 0;
}

void FileLock::release() {
    m_descriptor = Descriptor(-1); // lets the lock go
    m_held = false;
}

} // namespace vorle
