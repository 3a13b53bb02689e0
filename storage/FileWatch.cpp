#include "storage/FileWatch.h"

#include "base/Log.h"
#include "storage/DurableFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <system_error>

namespace vorle {

FileWatch::FileWatch(const QString &path) : m_path(path) {
    // A save is several changes of a folder: they are looked at once they are over.
    constexpr int settledMs = 60;
    m_settled.setSingleShot(true);
    m_settled.setInterval(settledMs);
    connect(&m_settled, &QTimer::timeout, this, [this] {
        follow();
        QString now = state();
        // A file system whose clock is coarse may show no difference where the system told one.
        if (m_told || now != m_known) {
            m_told = false;
            m_known = std::move(now);
            Q_EMIT changed();
        }
    });
    // Not pushed back by what comes after: a busy folder must not starve it.
    const auto look = [this] {
        if (!m_settled.isActive()) {
            m_settled.start();
        }
    };
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this,
            [this, look](const QString &folder) {
                m_told = m_told || folder == m_path; // a watched folder's own date is coarse too
                look();
            });
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, [this, look] {
        m_told = true;
        look();
    });
    follow();
    m_known = state();
}

/// The folders tell of a file that took the name, the file of what is written into it in place. A
/// file that was replaced is watched no more: the new one has to be.
void FileWatch::follow() {
    QStringList wanted{QFileInfo(m_path).absolutePath()};
    try {
        const QString target = linkTarget(m_path);
        wanted += {QFileInfo(target).absolutePath(), target};
    } catch (const std::system_error &) {
        logLine(QStringLiteral("the links of a watched file lead nowhere"));
    }
    wanted.removeDuplicates();
    for (const QString &path : std::as_const(wanted)) {
        const QFileInfo info(path);
        if (info.isFile()) {
            m_watcher.removePath(path); // it may be the watch of the file that was there before
        }
        if (info.exists() && !m_watcher.directories().contains(path)) {
            m_watcher.addPath(path);
        }
    }
}

QString FileWatch::state() const {
    struct stat file{};
    if (::stat(QFile::encodeName(m_path).constData(), &file) != 0) {
        return {};
    }
    return QStringLiteral("%1 %2 %3 %4")
        .arg(quint64(file.st_dev))
        .arg(quint64(file.st_ino))
        .arg(qint64(file.st_size))
        .arg(QFileInfo(m_path).lastModified().toMSecsSinceEpoch());
}

} // namespace vorle
