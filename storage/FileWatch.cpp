#include "storage/FileWatch.h"

#include "base/Log.h"
#include "base/OnDisk.h"
#include "storage/DurableFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <system_error>
#include <utility>

namespace vorle {

namespace {

/// A save is several changes of a folder: they are looked at once they are over.
constexpr std::chrono::milliseconds settled(60);

/// Which file has that name just now.
QString identityOf(const QString &path) {
    struct stat file{};
    return ::stat(QFile::encodeName(path).constData(), &file) == 0
               ? QStringLiteral("%1 %2").arg(quint64(file.st_dev)).arg(quint64(file.st_ino))
               : QString();
}

QString stateOf(const QString &path) {
    struct stat file{};
    if (::stat(QFile::encodeName(path).constData(), &file) != 0) {
        return {};
    }
    return QStringLiteral("%1 %2 %3 %4")
        .arg(quint64(file.st_dev))
        .arg(quint64(file.st_ino))
        .arg(qint64(file.st_size))
        .arg(QFileInfo(path).lastModified().toMSecsSinceEpoch());
}

} // namespace

FileWatch::FileWatch(const QString &path) : m_path(path) {
    m_settled.setSingleShot(true);
    m_settled.setInterval(settled);
    const auto ask = [this] { detach(look(this), QStringLiteral("a watched file")); };
    connect(&m_settled, &QTimer::timeout, this, ask);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, [this](const QString &folder) {
        m_told = m_told || folder == m_path; // a watched folder's own date is coarse too
        lookSoon();
    });
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, [this] {
        // A file system whose clock is coarse may show no difference where the system told one.
        m_told = true;
        lookSoon();
    });
    ask();
}

/// Not pushed back by what comes after: a busy folder must not starve it.
void FileWatch::lookSoon() {
    if (!m_settled.isActive()) {
        m_settled.start();
    }
}

FileWatch::Sight FileWatch::seen(const QString &path) {
    Sight sight;
    QStringList wanted{QFileInfo(path).absolutePath()};
    try {
        const QString target = linkTarget(path);
        wanted += {QFileInfo(target).absolutePath(), target};
    } catch (const std::system_error &) {
        logLine(QStringLiteral("the links of a watched file lead nowhere"));
    }
    wanted.removeDuplicates();
    for (const QString &each : std::as_const(wanted)) {
        const QFileInfo info(each);
        if (info.isFile()) {
            sight.files[each] = identityOf(each);
        } else if (info.exists()) {
            sight.folders += each;
        }
    }
    sight.state = stateOf(path);
    return sight;
}

Task<> FileWatch::look(QPointer<FileWatch> self) {
    if (std::exchange(self->m_looking, true)) {
        self->m_again = true;
        co_return;
    }
    const auto sight = co_await onDisk([path = self->m_path] { return seen(path); });
    if (!self) {
        co_return;
    }
    self->m_looking = false;
    if (!sight) {
        self->m_settled.start(maxDiskWait); // it may answer again
        co_return;
    }
    self->m_settled.setInterval(settled);
    self->follow(*sight);
    if (std::exchange(self->m_again, false)) {
        self->lookSoon();
    }
    if (std::exchange(self->m_told, false) || sight->state != self->m_known) {
        self->m_known = sight->state;
        Q_EMIT self->changed();
    }
}

/// The folders tell of a file that took the name, the file of what is written into it in place. A
/// file that was replaced is watched no more: the new one has to be. What is watched anew may have
/// changed since the disk was asked; one that the system does not let be watched is tried again
/// when something else tells of a change, not at once.
void FileWatch::follow(const Sight &sight) {
    for (const auto &[path, identity] : sight.files.asKeyValueRange()) {
        const bool isWatched = m_watcher.files().contains(path);
        if (isWatched && m_watched.value(path) == identity) {
            continue; // what came to it meanwhile is not to be missed
        }
        if (isWatched) {
            m_watcher.removePath(path); // of the file that was there before
        }
        m_watched[path] = identity;
        m_again = m_watcher.addPath(path) || m_again;
    }
    for (const QString &path : sight.folders) {
        if (!m_watcher.directories().contains(path)) {
            m_again = m_watcher.addPath(path) || m_again;
        }
    }
}

} // namespace vorle
