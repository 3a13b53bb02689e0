#pragma once

#include "base/OnDisk.h"
#include "search/discovery/Discovery.h"

#include <QList>
#include <QMap>

namespace vorle {

/// What a watched project's folder holds.
struct ProjectSnapshot {
    QString name;
    discovery::Project found;
    QStringList dependencies = {};
    QMap<QString, QString> versions = {}; ///< dependency to the version in use

    /// Its name in a prompt: "a project" for one without.
    QString shownName() const;
};

/// Reads the folders of the projects (a project's name to its folder), each asked apart (onDisk):
/// one that has not answered within `limit` has the problem NoAnswer, and holds none of the others
/// up. Main thread. @throws Cancelled
Task<QList<ProjectSnapshot>> askProjects(QMap<QString, QString> folders, CancelToken cancel = {},
                                         std::chrono::milliseconds limit = maxDiskWait);

} // namespace vorle
