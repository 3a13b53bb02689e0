#include "core/DurableFile.h"

#include "base/Descriptor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>
#include <vector>

namespace vorle {

namespace {

[[noreturn]] void fail(int code, const char *what) {
    throw std::system_error(code, std::generic_category(), what);
}

/// A temporary file, removed when it goes unless it took its final name.
class Temporary {
public:
    explicit Temporary(const QByteArray &name)
        : m_name(name)
        , m_file(::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                        S_IRUSR | S_IWUSR)) {
        if (!m_file.isOpen()) {
            fail(errno, "open");
        }
    }
    Temporary(const Temporary &) = delete;
    Temporary &operator=(const Temporary &) = delete;
    ~Temporary() {
        if (!m_kept) {
            ::unlink(m_name.constData());
        }
    }
    Descriptor &file() { return m_file; }
    void renameTo(const QByteArray &name) {
        if (::rename(m_name.constData(), name.constData()) != 0) {
            fail(errno, "rename");
        }
        m_kept = true;
    }

private:
    QByteArray m_name;
    Descriptor m_file;
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

void syncFolderOf(const QString &path) {
    const QByteArray folder = QFile::encodeName(QFileInfo(path).path());
    const Descriptor descriptor(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // The new file is in place already, and some file systems cannot sync a folder.
    if (descriptor.isOpen()) {
        ::fsync(descriptor.number());
    }
}

QString leftoverPrefix(const QString &path) {
    return QFileInfo(path).fileName() + QStringLiteral(".vorle-");
}

} // namespace

QString linkTarget(const QString &path) {
    constexpr int mostLinks = 40; // the system's own limit
    QString at = path;
    for (int links = 0; links <= mostLinks; ++links) {
        const QFileInfo info(at);
        if (!info.isSymbolicLink()) {
            return at;
        }
        at = info.symLinkTarget();
    }
    fail(ELOOP, "readlink");
}

std::optional<QByteArray> readWhole(const QString &path) {
    constexpr qsizetype spare = 64;            // the JSON parser may read past the end
    constexpr off_t mostBytes = 2'000'000'000; // twenty times the largest file foreseen
    const QByteArray name = QFile::encodeName(path);
    // Not to wait for ever on a pipe: it is refused below.
    const Descriptor file(::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) {
        if (errno == ENOENT || errno == ENOTDIR) {
            return std::nullopt;
        }
        fail(errno, "open");
    }
    struct stat state{};
    if (::fstat(file.number(), &state) != 0) {
        fail(errno, "fstat");
    }
    if (!S_ISREG(state.st_mode)) {
        fail(S_ISDIR(state.st_mode) ? EISDIR : EINVAL, "not a regular file");
    }
    if (state.st_size > mostBytes) {
        fail(EFBIG, "read");
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
            fail(errno, "read");
        }
        if (got == 0) {
            break;
        }
        size += std::max<ssize_t>(got, 0);
    }
    bytes.resize(size);
    return bytes;
}

void replaceWhole(const QString &path, std::span<const QByteArrayView> pieces) {
    const QString target = linkTarget(path);
    const QByteArray name = QFile::encodeName(target);
    struct stat old{};
    const bool exists = ::stat(name.constData(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) { // a device would be lost to the rename
        fail(S_ISDIR(old.st_mode) ? EISDIR : EINVAL, "not a regular file");
    }
    Temporary temporary(name + ".vorle-" + QByteArray::number(QCoreApplication::applicationPid()) +
                        '-' + QUuid::createUuid().toByteArray(QUuid::Id128));
    writeAll(temporary.file().number(), pieces);
    if (exists && ::fchmod(temporary.file().number(), old.st_mode & 07777) != 0) {
        fail(errno, "fchmod");
    }
    syncToDisk(temporary.file().number());
    if (temporary.file().close() != 0 && errno != EINTR) {
        fail(errno, "close");
    }
    temporary.renameTo(name);
    syncFolderOf(target);
}

void sweepLeftovers(const QString &path) {
    const QString target = linkTarget(path);
    const QString prefix = leftoverPrefix(target);
    QDir folder = QFileInfo(target).dir();
    const auto files = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString &file : files) {
        if (!file.startsWith(prefix)) {
            continue;
        }
        const int process = file.mid(prefix.size()).section(u'-', 0, 0).toInt();
        if (process > 0 && ::kill(process, 0) != 0 && errno == ESRCH) {
            folder.remove(file);
        }
    }
}

QString asideName(const QString &path, const QDateTime &now) {
    const QString base = linkTarget(path) + QStringLiteral(".illisible-") +
                         now.toLocalTime().toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    QString name = base;
    for (int number = 2; QFileInfo::exists(name); ++number) {
        name = base + u'-' + QString::number(number);
    }
    return name;
}

void keepAside(const QString &path, const QString &aside) {
    const QString target = linkTarget(path);
    // A second name costs nothing, cannot be half done, and needs no right to read.
    if (::link(QFile::encodeName(target).constData(), QFile::encodeName(aside).constData()) == 0 ||
        errno == ENOENT || errno == ENOTDIR) {
        return;
    }
    // Some file systems have no second names.
    const auto bytes = readWhole(target);
    if (bytes) {
        const QByteArrayView piece(*bytes);
        replaceWhole(aside, {&piece, 1});
    }
}

} // namespace vorle
