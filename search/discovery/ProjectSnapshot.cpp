#include "search/discovery/ProjectSnapshot.h"

#include "search/discovery/DeclaredVersions.h"
#include "search/discovery/LockFile.h"

namespace vorle {

bool ProjectSnapshot::hasFolder() const {
    return found.problem != discovery::Project::Problem::NoFolder;
}

QString ProjectSnapshot::shownName() const {
    return name.isEmpty() ? QStringLiteral("a project") : name;
}

QList<ProjectSnapshot> readProjects(const QMap<QString, QString> &folders) {
    QList<ProjectSnapshot> projects;
    for (auto it = folders.cbegin(); it != folders.cend(); ++it) {
        ProjectSnapshot project{it.key(), discovery::readProject(it.value())};
        if (project.found.manifest) {
            for (const auto &dependency : declaredDependencies(*project.found.manifest)) {
                project.dependencies += dependency.name;
            }
            project.versions = versionsInUse(project.found.folder, *project.found.manifest);
        }
        projects += std::move(project);
    }
    return projects;
}

} // namespace vorle
