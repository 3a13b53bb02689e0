#include "storage/DurableFile.h"

#include "base/Descriptor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <vector>

namespace vorle {

namespace {

[[noreturn]] void fail(int code, const char *what) {
    throw std::system_error(code, std::generic_category(), what);
}

[[noreturn]] void fail(int code, const QString &path) {
    throw std::system_error(code, std::generic_category(), path.toStdString());
}

constexpr std::string_view leftoverMark = ".vorle-";

/// A temporary file, removed when it goes unless it took its final name. It is locked for as long
/// as it is one: the system lets the lock go when the process ends, which tells a leftover from a
/// save under way whatever number the process had.
class Temporary {
public:
    explicit Temporary(const QByteArray &finalName)
        : m_name(finalName + leftoverMark.data() +
                 QByteArray::number(QCoreApplication::applicationPid()) + '-' +
                 QUuid::createUuid().toByteArray(QUuid::Id128))
        , m_file(::open(m_name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                        S_IRUSR | S_IWUSR)) {
        if (!m_file.isOpen()) {
            fail(errno, "open");
        }
        // A second number of the same open file keeps the lock past the first one's closing.
        m_lock = Descriptor(::fcntl(m_file.number(), F_DUPFD_CLOEXEC, 0));
        if (!m_lock.isOpen()) {
            const int refusal = errno;
            ::unlink(m_name.constData());
            fail(refusal, "open");
        }
        // What the umask took away. Some file systems have no modes to set.
        ::fchmod(m_file.number(), S_IRUSR | S_IWUSR);
        // Without locks on this file system the process's number in the name must do.
        ::flock(m_lock.number(), LOCK_EX | LOCK_NB);
    }
    Temporary(const Temporary &) = delete;
    Temporary &operator=(const Temporary &) = delete;
    ~Temporary() {
        if (!m_kept) {
            ::unlink(m_name.constData());
        }
    }
    Descriptor &file() { return m_file; }
    /// False when a sweep took it for a leftover in the moment before it was locked.
    bool stands() const {
        struct stat state{};
        if (::fstat(m_lock.number(), &state) != 0) {
            fail(errno, "fstat");
        }
        return state.st_nlink > 0;
    }
    void renameTo(const QByteArray &name) {
        if (::rename(m_name.constData(), name.constData()) != 0) {
            fail(errno, "rename");
        }
        m_kept = true;
    }

private:
    QByteArray m_name;
    Descriptor m_file;
    Descriptor m_lock{-1};
    bool m_kept = false;
};

void writeAll(int file, std::span<const QByteArrayView> pieces) {
    constexpr std::size_t most = 1024; // IOV_MAX on both systems
    std::vector<iovec> left;
    left.reserve(pieces.size());
    for (const QByteArrayView piece : pieces) {
        if (!piece.isEmpty()) {
            left.push_back(
                {const_cast<char *>(piece.data()), static_cast<std::size_t>(piece.size())});
        }
    }
    for (std::size_t next = 0; next < left.size();) {
        const auto count = static_cast<int>(std::min(most, left.size() - next));
        const ssize_t done = ::writev(file, &left[next], count);
        if (done < 0) {
            if (errno == EINTR) {
                continue;
            }
            fail(errno, "write");
        }
        if (done == 0) { // no bytes and no reason: not to be tried without end
            fail(EIO, "write");
        }
        auto written = static_cast<std::size_t>(done);
        while (next < left.size() && written >= left[next].iov_len) {
            written -= left[next++].iov_len;
        }
        if (written > 0) {
            left[next].iov_base = static_cast<char *>(left[next].iov_base) + written;
            left[next].iov_len -= written;
        }
    }
}

void syncToDisk(int file) {
#ifdef F_FULLFSYNC // where it exists, fsync stops at the drive's own cache
    if (::fcntl(file, F_FULLFSYNC) == 0) {
        return;
    }
#endif
    if (::fsync(file) != 0) {
        fail(errno, "fsync");
    }
}

/// The folder that a file's new name is to be synced in: opened before anything is written, so
/// that a lack of descriptors changes nothing.
class Folder {
public:
    explicit Folder(const QString &path)
        : m_descriptor(
              ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        // A folder may be written to and not be read: its syncing is then left to the system.
        if (!m_descriptor.isOpen() && errno != EACCES) {
            fail(errno, path);
        }
    }
    void sync() const {
        // Some file systems have no such thing for a folder.
        if (m_descriptor.isOpen() && ::fsync(m_descriptor.number()) != 0 && errno != EINVAL &&
            errno != ENOTSUP && errno != EBADF) {
            fail(errno, "fsync");
        }
    }

private:
    Descriptor m_descriptor;
};

/// A file that is about to be replaced; none where it may not be read, and then goes at once.
Descriptor openedToKeep(const QByteArray &name) {
    return Descriptor(::open(name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
}

/// The process that a name of ours for a temporary file carries, or 0 for another name.
int writerOf(std::string_view name) {
    constexpr std::size_t idDigits = 32;
    const std::size_t mark = name.rfind(leftoverMark);
    if (mark == std::string_view::npos || name.size() < mark + leftoverMark.size() + idDigits + 2) {
        return 0;
    }
    const std::string_view id = name.substr(name.size() - idDigits);
    const std::string_view number = name.substr(
        mark + leftoverMark.size(), name.size() - idDigits - 1 - mark - leftoverMark.size());
    int process = 0;
    const auto [end, error] =
        std::from_chars(number.data(), number.data() + number.size(), process);
    const bool ours = error == std::errc() && end == number.data() + number.size() &&
                      name[name.size() - idDigits - 1] == '-' &&
                      id.find_first_not_of("0123456789abcdef") == std::string_view::npos;
    return ours ? process : 0;
}

bool isAbandoned(const std::string &path, int process) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) {
        return false;
    }
    if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) {
        return true;
    }
    return errno != EWOULDBLOCK && ::kill(process, 0) != 0 && errno == ESRCH;
}

/// Makes one folder, 0700 where the file system has modes. Gives what the system said when it is
/// not there afterwards.
int madeFolder(const QByteArray &name) {
    if (::mkdir(name.constData(), S_IRWXU) == 0) {
        ::chmod(name.constData(), S_IRWXU); // what the umask took away
        return 0;
    }
    const int refusal = errno;
    struct stat state{};
    return ::stat(name.constData(), &state) == 0 && S_ISDIR(state.st_mode) ? 0 : refusal;
}

} // namespace

QString linkTarget(const QString &path) {
    constexpr int maxLinks = 40; // the system's own limit
    QString at = path;
    for (int links = 0; links <= maxLinks; ++links) {
        const QFileInfo info(at);
        if (!info.isSymbolicLink()) {
            return at;
        }
        at = info.symLinkTarget();
    }
    fail(ELOOP, path);
}

std::optional<QByteArray> readWhole(const QString &path, qint64 most) {
    constexpr qsizetype spare = 64; // the JSON parser may read past the end
    const QByteArray name = QFile::encodeName(path);
    // Not to wait for ever on a pipe: it is refused below.
    const Descriptor file(::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) {
        if (errno == ENOENT || errno == ENOTDIR) {
            return std::nullopt;
        }
        fail(errno, path);
    }
    struct stat state{};
    if (::fstat(file.number(), &state) != 0) {
        fail(errno, path);
    }
    if (!S_ISREG(state.st_mode)) {
        fail(S_ISDIR(state.st_mode) ? EISDIR : EINVAL, path);
    }
    if (state.st_size > most) {
        fail(EFBIG, path);
    }
    QByteArray bytes;
    const auto expected = static_cast<qsizetype>(state.st_size);
    bytes.reserve(expected + spare);
    bytes.resize(expected);
    qsizetype size = 0;
    while (size < expected) {
        const ssize_t got =
            ::read(file.number(), bytes.data() + size, static_cast<std::size_t>(expected - size));
        if (got < 0 && errno != EINTR) {
            fail(errno, path);
        }
        if (got == 0) {
            break;
        }
        size += std::max<ssize_t>(got, 0);
    }
    bytes.resize(size);
    return bytes;
}

FormerFile replaceWhole(const QString &path, std::span<const QByteArrayView> pieces,
                        AtLink atLink) {
    const QString target = atLink == AtLink::WriteThrough ? linkTarget(path) : path;
    const QByteArray name = QFile::encodeName(target);
    struct stat old{};
    const bool exists = ::lstat(name.constData(), &old) == 0 && !S_ISLNK(old.st_mode);
    if (exists && !S_ISREG(old.st_mode)) { // a device would be lost to the rename
        fail(S_ISDIR(old.st_mode) ? EISDIR : EINVAL, "not a regular file");
    }
    const Folder folder(QFileInfo(target).path());
    auto temporary = std::make_unique<Temporary>(name);
    // A few times: where the file system counts no names, the rename tells.
    for (int tries = 0; tries < 3 && !temporary->stands(); ++tries) {
        temporary = std::make_unique<Temporary>(name);
    }
    writeAll(temporary->file().number(), pieces);
    if (exists && ::fchmod(temporary->file().number(), old.st_mode & 07777) != 0) {
        fail(errno, "fchmod");
    }
    syncToDisk(temporary->file().number());
    if (temporary->file().close() != 0 && errno != EINTR) {
        fail(errno, "close");
    }
    Descriptor former = exists ? openedToKeep(name) : Descriptor(-1);
    try {
        temporary->renameTo(name);
    } catch (const std::system_error &) {
        if (!former.isOpen()) {
            throw;
        }
        former = Descriptor(-1); // some file systems replace nothing that is open
        temporary->renameTo(name);
    }
    folder.sync();
    return FormerFile(std::move(former));
}

void replaceWhole(const QString &path, QByteArrayView bytes, AtLink atLink) {
    replaceWhole(path, {&bytes, 1}, atLink);
}

void makeFolder(const QString &path) {
    const QByteArray name = QFile::encodeName(path);
    int refusal = madeFolder(name);
    if (refusal == ENOENT && !QFileInfo(path).isRoot()) {
        makeFolder(QFileInfo(path).dir().absolutePath());
        refusal = madeFolder(name);
    }
    if (refusal != 0) {
        fail(refusal, path);
    }
}

void makeOwnFolder(const QString &path) {
    makeFolder(path);
    struct stat state{};
    const QByteArray name = QFile::encodeName(path);
    if (::stat(name.constData(), &state) == 0 && (state.st_mode & 07777) != S_IRWXU &&
        state.st_uid == ::geteuid()) {
        ::chmod(name.constData(), S_IRWXU); // in vain where the file system has no modes
    }
}

void removeStaleTemporaryFiles(const QString &folder) {
    std::error_code ignored;
    std::filesystem::directory_iterator entry(QFile::encodeName(folder).toStdString(), ignored);
    const std::filesystem::directory_iterator end;
    for (; !ignored && entry != end; entry.increment(ignored)) {
        const std::string path = entry->path().string();
        const int process = writerOf(entry->path().filename().string());
        if (process > 0 && isAbandoned(path, process)) {
            ::unlink(path.c_str());
        }
    }
}

QString backupName(const QString &path, const QDateTime &now) {
    const QString base = linkTarget(path) + QStringLiteral(".illisible-") +
                         now.toLocalTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    QString name = base;
    for (int number = 2; QFileInfo::exists(name); ++number) {
        name = base + u'-' + QString::number(number);
    }
    return name;
}

void keepCopy(const QString &path, const QString &aside) {
    const QString target = linkTarget(path);
    // A second name costs nothing, cannot be half done, and needs no right to read.
    if (::link(QFile::encodeName(target).constData(), QFile::encodeName(aside).constData()) == 0 ||
        errno == ENOENT || errno == ENOTDIR) {
        return;
    }
    // Some file systems have no second names.
    const auto bytes = readWhole(target);
    if (bytes) {
        replaceWhole(aside, *bytes);
    }
}

} // namespace vorle
