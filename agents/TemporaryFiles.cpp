#include "agents/TemporaryFiles.h"

#include "base/Descriptor.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUuid>

#include <cerrno>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vorle {

namespace {

[[noreturn]] void failOn(const QString &path, int error) {
    throw std::system_error(error, std::generic_category(), path.toStdString());
}

Descriptor opened(const QString &path, int flags) {
    Descriptor file(::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, 0600));
    if (!file.isOpen()) {
        failOn(path, errno);
    }
    return file;
}

std::optional<struct stat> statusOf(const QString &path) {
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? std::optional(status)
                                                                      : std::nullopt;
}

/// A folder, no link to one, that is the user's and that not everybody can write to.
bool isOwnFolder(const QString &path) {
    const auto status = statusOf(path);
    return status && S_ISDIR(status->st_mode) && status->st_uid == ::geteuid() &&
           (status->st_mode & S_IWOTH) == 0;
}

/// Whether somebody else than the user and root can put a file there or in a folder above.
bool othersCanWriteAlong(const QString &path) {
    QString folder = QFileInfo(path).canonicalFilePath();
    while (!folder.isEmpty()) {
        const auto status = statusOf(folder);
        if (!status || (status->st_mode & S_IWOTH) != 0 ||
            (status->st_uid != 0 && status->st_uid != ::geteuid())) {
            return true;
        }
        const QString above = QFileInfo(folder).path();
        if (above == folder) {
            return false;
        }
        folder = above;
    }
    return true;
}

QString userFolder() {
    const QString runtime = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR"));
    if (QDir::isAbsolutePath(runtime) && isOwnFolder(runtime) && !othersCanWriteAlong(runtime)) {
        return runtime + QStringLiteral("/vorle");
    }
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                          QStringLiteral("/vorle");
    if (!QDir().mkpath(cache)) {
        failOn(cache, errno);
    }
    return cache + QStringLiteral("/tmp");
}

} // namespace

TemporaryFile::TemporaryFile(QStringView prefix, QStringView suffix) {
    const QString folder = QDir::tempPath(); // empty when TMPDIR does not exist
    if (folder.isEmpty()) {
        failOn(QFile::decodeName(qgetenv("TMPDIR")), ENOENT);
    }
    m_path = folder + u'/' + prefix.toString() +
             QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + suffix.toString();
    opened(m_path, O_WRONLY | O_CREAT | O_EXCL);
}

TemporaryFile::~TemporaryFile() {
    if (!m_kept) {
        QFile::remove(m_path);
    }
}

void TemporaryFile::write(QByteArrayView bytes) const {
    const Descriptor file = opened(m_path, O_WRONLY | O_TRUNC | O_NOFOLLOW);
    while (!bytes.isEmpty()) {
        const ssize_t written =
            ::write(file.number(), bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno != EINTR) {
            failOn(m_path, errno);
        }
        bytes = bytes.sliced(std::max<ssize_t>(written, 0));
    }
}

void preparePrivateTemporaryDirectory() {
    if (!othersCanWriteAlong(QDir::tempPath())) {
        return;
    }
    const QString folder = userFolder();
    const QByteArray path = QFile::encodeName(folder);
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST) {
        failOn(folder, errno);
    }
    // What stood there already must be ours, or it could be anybody's trap.
    if (!isOwnFolder(folder)) {
        failOn(folder, EPERM);
    }
    if (::chmod(path.constData(), 0700) != 0) {
        failOn(folder, errno);
    }
    qputenv("TMPDIR", path);
}

void sweepStrays() {
    // Only names this program gives: a folder of the user's may begin with its name too.
    static const QRegularExpression ours(QStringLiteral(
        "^vorle-((schema|answer|run|install|launch)-[0-9A-F]{8}(-[0-9A-F]{4}){3}-"
        "[0-9A-F]{12}(\\.json|\\.out|\\.err|\\.txt|\\.command)?|demo-[A-Za-z]{6})$"));
    const QDateTime oldest = QDateTime::currentDateTimeUtc().addDays(-1);
    const QFileInfoList strays = QDir(QDir::tempPath())
                                     .entryInfoList({QStringLiteral("vorle-*")},
                                                    QDir::Files | QDir::Dirs | QDir::NoSymLinks);
    for (const QFileInfo &stray : strays) {
        if (!ours.match(stray.fileName()).hasMatch() || stray.lastModified() >= oldest ||
            stray.ownerId() != ::geteuid()) {
            continue;
        }
        if (stray.isDir()) {
            QDir(stray.filePath()).removeRecursively();
        } else {
            QFile::remove(stray.filePath());
        }
    }
}

} // namespace vorle
