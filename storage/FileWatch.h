#pragma once

#include "base/Async.h"

#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

namespace vorle {

/// Tells soon after a file was written into, replaced, made or taken away, whoever did it and
/// through whatever symbolic link it is reached; of a folder, that something in it was made,
/// renamed or taken away. What goes on beside it is not told. It sleeps until the system speaks.
///
/// It tells once when the watch stands: what came before that is told by nothing else. Main thread,
/// which never waits for the disk: a disk that does not answer is not watched until it does.
class FileWatch final : public QObject {
    Q_OBJECT
public:
    /// Watches `path`, as soon as the disk has answered. The file need not be there; without its
    /// folder nothing is told.
    explicit FileWatch(const QString &path);

Q_SIGNALS:
    void changed();

private:
    /// What the disk says of it.
    struct Sight {
        QStringList folders;           ///< that are there: where it lies, and where its links lead
        QHash<QString, QString> files; ///< which file each of these names means
        QString state; ///< tells one state of the file from another, without reading it
    };
    static Sight seen(const QString &path);
    static Task<> look(QPointer<FileWatch> self);
    void lookSoon();
    void follow(const Sight &sight);

    QString m_path;
    QString m_known;        ///< the state that was told last
    bool m_told = true;     ///< there is something to tell, whatever the state is
    bool m_looking = false; ///< the disk is being asked
    bool m_again = false;   ///< and is to be asked once more
    QFileSystemWatcher m_watcher;
    QHash<QString, QString> m_watched; ///< which file each name meant when it was watched
    QTimer m_settled;
};

} // namespace vorle
