#include "agents/setup/Placement.h"

#include "base/Descriptor.h"

#include <QDir>
#include <QFile>
#include <QUuid>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vorle {

namespace {

constexpr mode_t runnable = 0755;
/// What a kill in the middle of a copy leaves in the folder begins so.
QString strayPrefix() { return QStringLiteral(".vorle-install-"); }

[[noreturn]] void failOn(const QString &path, int error) {
    throw std::system_error(error, std::generic_category(), path.toStdString());
}

void requirePlainFile(const QString &path) {
    struct stat status = {};
    if (::lstat(QFile::encodeName(path).constData(), &status) != 0) {
        failOn(path, errno);
    }
    if (!S_ISREG(status.st_mode) || status.st_nlink != 1 || status.st_size == 0) {
        failOn(path, EINVAL);
    }
}

void syncFile(const QString &path) {
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen() || ::fsync(file.number()) != 0) {
        failOn(path, errno);
    }
}

void renameTo(const QString &from, const QString &to) {
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
        failOn(to, errno);
    }
}

/// A copy beside its place, for a file of another file system.
class Copy {
public:
    Copy(const QString &file, const QString &folder)
        : m_path(folder + u'/' + strayPrefix() +
                 QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()) {
        std::error_code error;
        std::filesystem::copy_file(file.toStdString(), m_path.toStdString(), error);
        if (error) {
            QFile::remove(m_path);
            failOn(m_path, error.value());
        }
    }
    ~Copy() { QFile::remove(m_path); }
    Copy(const Copy &) = delete;
    Copy &operator=(const Copy &) = delete;

    const QString &path() const { return m_path; }

private:
    QString m_path;
};

void sweep(const QString &folder) {
    const QDir there(folder);
    const QStringList strays =
        there.entryList({strayPrefix() + u'*'}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &stray : strays) {
        QFile::remove(there.filePath(stray));
    }
}

} // namespace

void placeExecutable(const QString &file, const QString &folder, const QString &name) {
    requirePlainFile(file);
    std::error_code error;
    std::filesystem::create_directories(folder.toStdString(), error);
    if (error) {
        failOn(folder, error.value());
    }
    sweep(folder);
    const QString target = folder + u'/' + name;
    const auto ready = [](const QString &path) {
        if (::chmod(QFile::encodeName(path).constData(), runnable) != 0) {
            failOn(path, errno);
        }
        syncFile(path);
    };
    struct stat from = {};
    struct stat to = {};
    const bool near = ::stat(QFile::encodeName(file).constData(), &from) == 0 &&
                      ::stat(QFile::encodeName(folder).constData(), &to) == 0 &&
                      from.st_dev == to.st_dev;
    if (near) {
        ready(file);
        renameTo(file, target);
    } else {
        const Copy copy(file, folder);
        ready(copy.path());
        renameTo(copy.path(), target);
    }
}

} // namespace vorle
