#include "search/discovery/ProjectReading.h"

#include "search/discovery/DeclaredVersions.h"
#include "search/discovery/LockFile.h"

namespace vorle {

bool ProjectReading::hasFolder() const {
    return found.problem != discovery::Project::Problem::NoFolder;
}

QString ProjectReading::shownName() const {
    return name.isEmpty() ? QStringLiteral("a project") : name;
}

QList<ProjectReading> readProjects(const QMap<QString, QString> &folders) {
    QList<ProjectReading> projects;
    for (auto it = folders.cbegin(); it != folders.cend(); ++it) {
        ProjectReading project{it.key(), discovery::readProject(it.value())};
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
