#include "update/ReleaseArchive.h"

#include "base/Descriptor.h"
#include "update/UpdateError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStringList>

#include <archive.h>
#include <archive_entry.h>
#include <sodium.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace vorle {

namespace {

struct ArchiveDeleter {
    void operator()(archive *opened) const { archive_read_free(opened); }
};

/// A path inside the archive as one of ours: relative, down alone, of signs that everybody sees.
/// Empty for the root itself.
QString insidePath(const QByteArray &raw) {
    constexpr qsizetype longest = 1000;
    const QString path = QString::fromUtf8(raw);
    QStringList parts;
    for (const QString &part : path.split(u'/', Qt::SkipEmptyParts)) {
        if (part == u"..") {
            throw UpdateError(QStringLiteral("the archive leads out of its folder"));
        }
        if (part != u".") {
            parts += part;
        }
    }
    const auto isControl = [](QChar sign) { return sign.category() == QChar::Other_Control; };
    if (path.startsWith(u'/') || path.size() > longest || path.toUtf8() != raw ||
        std::any_of(path.begin(), path.end(), isControl)) {
        throw UpdateError(QStringLiteral("the archive holds a path that is none of ours"));
    }
    return parts.join(u'/');
}

class Unpacking {
public:
    Unpacking(const QString &archive, const QString &folder, ArchiveLimits limits)
        : m_folder(folder), m_limits(limits), m_packed(QFileInfo(archive).size()) {
        constexpr size_t block = 1 << 16;
        archive_read_support_filter_xz(m_archive.get());
        archive_read_support_filter_gzip(m_archive.get());
        archive_read_support_format_tar(m_archive.get());
        check(archive_read_open_filename(m_archive.get(), QFile::encodeName(archive).constData(),
                                         block));
        makeFolder(m_folder);
    }

    void run(const std::function<void(double)> &progress) {
        archive_entry *entry = nullptr;
        int entries = 0;
        for (int got = 0;
             (got = archive_read_next_header(m_archive.get(), &entry)) != ARCHIVE_EOF;) {
            check(got);
            if (++entries > m_limits.entries) {
                throw UpdateError(QStringLiteral("the archive holds too many files"));
            }
            take(*entry);
            if (progress && m_packed > 0) {
                progress(double(archive_filter_bytes(m_archive.get(), -1)) / double(m_packed));
            }
        }
        for (const QString &made : std::as_const(m_folders)) {
            const Descriptor folder(
                ::open(QFile::encodeName(made).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            if (!folder.isOpen() || (::fsync(folder.number()) != 0 && errno != EINVAL)) {
                throwRefusal(made);
            }
        }
    }

private:
    /// A warning of the library (a header it had to guess at) is a refusal here.
    void check(int result) const {
        if (result != ARCHIVE_OK) {
            throw UpdateError(QStringLiteral("the archive cannot be read: ") +
                              QString::fromUtf8(archive_error_string(m_archive.get())));
        }
    }

    void take(archive_entry &entry) {
        const char *name = archive_entry_pathname_utf8(&entry);
        if (name == nullptr) {
            throw UpdateError(QStringLiteral("the archive holds a path that is none of ours"));
        }
        const QString inside = insidePath(name);
        const bool isLink =
            archive_entry_hardlink(&entry) != nullptr || archive_entry_symlink(&entry) != nullptr;
        const auto type = archive_entry_filetype(&entry);
        if (isLink || (type != AE_IFDIR && type != AE_IFREG)) {
            throw UpdateError(QStringLiteral("the archive holds a link or a device"));
        }
        const QString path = inside.isEmpty() ? m_folder : m_folder + u'/' + inside;
        if (type == AE_IFDIR) {
            makeFolders(path);
        } else if (inside.isEmpty()) {
            throw UpdateError(QStringLiteral("the archive holds a file without a name"));
        } else {
            makeFolders(QFileInfo(path).path());
            writeFile(path, (archive_entry_perm(&entry) & S_IXUSR) != 0);
        }
    }

    void makeFolders(const QString &path) {
        if (m_folders.contains(path)) {
            return;
        }
        makeFolders(QFileInfo(path).path()); // ends at the root, which is there
        makeFolder(path);
    }

    void makeFolder(const QString &path) {
        constexpr mode_t mode = S_IRWXU | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH;
        if (::mkdir(QFile::encodeName(path).constData(), mode) != 0) {
            throwRefusal(path);
        }
        m_folders += path;
    }

    void writeFile(const QString &path, bool runs) {
        constexpr mode_t plain = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
        constexpr mode_t run = S_IXUSR | S_IXGRP | S_IXOTH;
        Descriptor file(::open(QFile::encodeName(path).constData(),
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                               runs ? plain | run : plain));
        if (!file.isOpen()) {
            throwRefusal(path);
        }
        const void *data = nullptr;
        size_t size = 0;
        la_int64_t offset = 0;
        for (int got = 0; (got = archive_read_data_block(m_archive.get(), &data, &size, &offset)) !=
                          ARCHIVE_EOF;) {
            check(got);
            m_bytes += static_cast<qint64>(size);
            if (m_bytes > m_limits.bytes || offset > m_limits.bytes) {
                throw UpdateError(QStringLiteral("the archive holds too much"));
            }
            writeAt(file.number(), path, static_cast<const char *>(data), size, offset);
        }
        if (::fsync(file.number()) != 0 || file.close() != 0) {
            throwRefusal(path);
        }
    }

    static void writeAt(int file, const QString &path, const char *data, size_t size,
                        la_int64_t offset) {
        while (size > 0) {
            const ssize_t done = ::pwrite(file, data, size, offset);
            if (done < 0 && errno == EINTR) {
                continue;
            }
            if (done <= 0) {
                throwRefusal(path);
            }
            data += done;
            size -= static_cast<size_t>(done);
            offset += done;
        }
    }

    std::unique_ptr<archive, ArchiveDeleter> m_archive{archive_read_new()};
    QString m_folder;
    ArchiveLimits m_limits;
    qint64 m_packed;
    qint64 m_bytes = 0;
    QSet<QString> m_folders; // made here
};

} // namespace

bool isSignedBy(const QByteArray &publicKey, const QByteArray &signature, const QString &file) {
    QFile opened(file);
    if (sodium_init() < 0 || publicKey.size() != qsizetype(crypto_sign_PUBLICKEYBYTES) ||
        signature.size() != qsizetype(crypto_sign_BYTES) || !opened.open(QIODevice::ReadOnly) ||
        opened.size() == 0) {
        return false;
    }
    const uchar *bytes = opened.map(0, opened.size());
    return bytes != nullptr &&
           crypto_sign_verify_detached(reinterpret_cast<const uchar *>(signature.constData()),
                                       bytes, static_cast<quint64>(opened.size()),
                                       reinterpret_cast<const uchar *>(publicKey.constData())) == 0;
}

void unpackRelease(const QString &archive, const QString &folder,
                   const std::function<void(double)> &progress, ArchiveLimits limits) {
    Unpacking(archive, folder, limits).run(progress);
}

} // namespace vorle
