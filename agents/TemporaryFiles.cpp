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
#include <filesystem>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
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

constexpr mode_t writtenByOthers = S_IWGRP | S_IWOTH;

/// A folder, no link to one, that is the user's and that nobody else can write to.
bool isOwnFolder(const QString &path) {
    const auto status = statusOf(path);
    return status && S_ISDIR(status->st_mode) && status->st_uid == ::geteuid() &&
           (status->st_mode & writtenByOthers) == 0;
}

/// Whether somebody else than the user and root can put a file there or in a folder above.
bool othersCanWriteAlong(const QString &path) {
    QString folder = QFileInfo(path).canonicalFilePath();
    while (!folder.isEmpty()) {
        const auto status = statusOf(folder);
        if (!status || (status->st_mode & writtenByOthers) != 0 ||
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

/// Where the folder may stand, the best first.
QStringList userFolders() {
    QStringList folders;
    const QString runtime = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR"));
    if (QDir::isAbsolutePath(runtime) && isOwnFolder(runtime) && !othersCanWriteAlong(runtime)) {
        folders += runtime + QStringLiteral("/vorle");
    }
    for (const auto location :
         {QStandardPaths::GenericCacheLocation, QStandardPaths::GenericDataLocation}) {
        folders += QStandardPaths::writableLocation(location) + QStringLiteral("/vorle/tmp");
    }
    return folders;
}

/// 0 once the folder is there and the user's alone, else why it is not, as an `errno`.
int makePrivate(const QString &folder) {
    const QByteArray path = QFile::encodeName(folder);
    std::error_code refused;
    std::filesystem::create_directories(std::filesystem::path(path.constData()).parent_path(),
                                        refused);
    if (refused) {
        return refused.value();
    }
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST) {
        return errno;
    }
    // What stood there already must be ours, or it could be anybody's trap.
    if (!isOwnFolder(folder)) {
        return EPERM;
    }
    if (::chmod(path.constData(), 0700) != 0) {
        return errno;
    }
    return ::access(path.constData(), W_OK | X_OK) == 0 ? 0 : errno;
}

/// Takes the lock that tells a living owner. False when another has it.
bool takeLock(int descriptor) {
    return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

enum class Use { Free, Held, Unknown };

/// Whether a living process has it in use; what is free stays locked as long as `held` lives.
Use useOf(const QString &path, std::optional<Descriptor> &held) {
    held.emplace(::open(QFile::encodeName(path).constData(),
                        O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!held->isOpen()) {
        return Use::Unknown;
    }
    if (::flock(held->number(), LOCK_EX | LOCK_NB) == 0) {
        return Use::Free;
    }
    return errno == EWOULDBLOCK ? Use::Held : Use::Unknown;
}

/// Whether the name still stands for the file that is open: it may have been swept before its lock
/// was taken. What the system does not tell counts as yes, or one would be made after the other.
bool isStillThere(const QString &path, int descriptor) {
    struct stat open = {};
    struct stat named = {};
    if (::fstat(descriptor, &open) != 0) {
        return true;
    }
    if (::lstat(QFile::encodeName(path).constData(), &named) != 0) {
        return errno != ENOENT;
    }
    return open.st_ino == named.st_ino && open.st_dev == named.st_dev;
}

} // namespace

Descriptor inUse(const QString &path) {
    std::optional<Descriptor> held;
    return useOf(path, held) == Use::Free ? std::move(*held) : Descriptor(-1);
}

void removeWhole(const QString &folder) {
    namespace fs = std::filesystem;
    std::error_code end;
    std::error_code ignored;
    const fs::path root(folder.toStdString());
    fs::permissions(root, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (fs::recursive_directory_iterator it(root, end); !end && it != fs::end(it);
         it.increment(end)) {
        if (fs::is_directory(it->symlink_status(ignored))) {
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        }
    }
    fs::remove_all(root, ignored);
}

TemporaryFile::TemporaryFile(QStringView prefix, QStringView suffix) {
    const QString folder = QDir::tempPath(); // empty when TMPDIR does not exist
    if (folder.isEmpty()) {
        failOn(QFile::decodeName(qgetenv("TMPDIR")), ENOENT);
    }
    do {
        m_path = folder + u'/' + prefix.toString() +
                 QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + suffix.toString();
        // For reading alone: a script that somebody may still write to is not run.
        m_use.emplace(opened(m_path, O_RDONLY | O_CREAT | O_EXCL));
        ::fchmod(m_use->number(), 0600); // whatever the mask has taken away
    } while (!takeLock(m_use->number()) || !isStillThere(m_path, m_use->number()));
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
        if (written == 0 || (written < 0 && errno != EINTR)) { // nothing, and no reason given
            failOn(m_path, written == 0 ? EIO : errno);
        }
        bytes = bytes.sliced(std::max<ssize_t>(written, 0));
    }
}

void preparePrivateTemporaryDirectory() {
    if (!othersCanWriteAlong(QDir::tempPath())) {
        return;
    }
    const QStringList folders = userFolders();
    int refusal = 0;
    for (const QString &folder : folders) {
        const int error = makePrivate(folder);
        if (error == 0) {
            qputenv("TMPDIR", QFile::encodeName(folder));
            return;
        }
        refusal = refusal != 0 ? refusal : error;
    }
    failOn(folders.first(), refusal);
}

void removeStaleFiles() {
    // Only names this program gives: a folder of the user's may begin with its name too.
    static const QRegularExpression ours(QStringLiteral(
        "^vorle-((schema|answer|run|install|score|(launch|feedback))-[0-9A-F]{8}(-[0-9A-F]{4}){3}-"
        "[0-9A-F]{12}(\\.json|\\.out|\\.err|\\.txt|\\.command|\\.png|\\.jpg|\\.gif|"
        "\\.webp)?|demo-[A-Za-z]{6})$"));
    const QDateTime oldest = QDateTime::currentDateTimeUtc().addDays(-1);
    const QFileInfoList strays =
        QDir(QDir::tempPath())
            .entryInfoList({QStringLiteral("vorle-*")},
                           QDir::Files | QDir::Dirs | QDir::System | QDir::NoSymLinks);
    for (const QFileInfo &stray : strays) {
        const auto name = ours.match(stray.fileName());
        if (!name.hasMatch() || stray.ownerId() != ::geteuid()) {
            continue;
        }
        std::optional<Descriptor> held; // until it is gone: nobody takes it meanwhile
        const Use use = useOf(stray.filePath(), held);
        const bool leftToAnother = !name.captured(3).isEmpty();
        const bool old = stray.lastModified() < oldest;
        if (use == Use::Held || (!old && (leftToAnother || use == Use::Unknown))) {
            continue;
        }
        if (stray.isDir()) {
            removeWhole(stray.filePath());
        } else {
            QFile::remove(stray.filePath());
        }
    }
}

} // namespace vorle
