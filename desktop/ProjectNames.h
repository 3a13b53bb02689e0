#pragma once

#include "base/Async.h"
#include "core/Preferences.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace vorle {

/// Keeps the names of the watched projects in a file, for share sheets to offer: one JSON list of
/// names, replaced as a whole each time they change. What the disk refuses is logged, and written
/// with the next change. Main thread; the preferences outlive it.
class ProjectNames final : public QObject {
    Q_OBJECT
public:
    ProjectNames(QString file, const Preferences &preferences, QObject *parent = nullptr);

    /// Ends once the names are written.
    Task<> written() { return m_work.join(); }

private:
    void write();
    Task<> work();

    QString m_file;
    const Preferences &m_preferences;
    std::optional<QStringList> m_written;
    bool m_writing = false;
    TaskGroup m_work;
};

} // namespace vorle
