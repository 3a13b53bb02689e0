#pragma once

#include "search/discovery/Discovery.h"

#include <QList>
#include <QString>

#include <chrono>

namespace vorle::discovery {

/// How far a search for projects goes before it is content with what it has.
struct FinderLimits {
    int depth = 3;       ///< levels of folders below each root
    int entries = 5'000; ///< looked at in all
    int projects = 12;   ///< given at most
    std::chrono::milliseconds time{2'000};
};

/// Whether the folders that a system may guard by a question of its own ("Documents", "Bureau") are
/// looked into: macOS asks the user about each, which nobody wants to be greeted by.
enum class PersonalFolders { Included, LeftOut };

/// The projects under the usual places of a person's home, the one whose dependency file changed
/// last first, each read as readProject() does. A folder with a dependency file is a project, and
/// what lies in it is not looked at; hidden folders, those of packages and builds, links and other
/// devices are passed over. Where none of the usual places is there, the home's own folders are
/// looked at, one level. Any thread, for the disk may be slow; never throws.
QList<Project> findProjects(const QString &home, PersonalFolders personal,
                            const FinderLimits &limits = {});

} // namespace vorle::discovery
