#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

namespace vorle {

/// Tells soon after a file was written into, replaced, made or taken away, whoever did it and
/// through whatever symbolic link it is reached; of a folder, that something in it was made,
/// renamed or taken away. What goes on beside it is not told. It sleeps until the system speaks.
/// Main thread.
class FileWatch final : public QObject {
    Q_OBJECT
public:
    /// Watches `path` from now on. The file need not be there; without its folder nothing is told.
    explicit FileWatch(const QString &path);

Q_SIGNALS:
    void changed();

private:
    void follow();
    /// What tells one state of the file from another, without reading it.
    QString state() const;

    QString m_path;
    QString m_known;     ///< the state that was told last
    bool m_told = false; ///< the system spoke of the file itself
    QFileSystemWatcher m_watcher;
    QTimer m_settled;
};

} // namespace vorle
