#include "search/discovery/ProjectSnapshot.h"

#include "search/discovery/DeclaredVersions.h"
#include "search/discovery/LockFile.h"

#include <vector>

namespace vorle {

namespace {

ProjectSnapshot readProject(const QString &name, const QString &folder) {
    ProjectSnapshot project{name, discovery::readProject(folder)};
    if (project.found.manifest) {
        for (const auto &dependency : declaredDependencies(*project.found.manifest)) {
            project.dependencies += dependency.name;
        }
        project.versions = versionsInUse(project.found.folder, *project.found.manifest);
    }
    return project;
}

} // namespace

QString ProjectSnapshot::shownName() const {
    return name.isEmpty() ? QStringLiteral("a project") : name;
}

Task<QList<ProjectSnapshot>> askProjects(QMap<QString, QString> folders, CancelToken cancel,
                                         std::chrono::milliseconds limit) {
    std::vector<Task<std::optional<ProjectSnapshot>>> asked;
    for (auto it = folders.cbegin(); it != folders.cend(); ++it) {
        asked.push_back(
            onDisk([name = it.key(), folder = it.value()] { return readProject(name, folder); },
                   limit, cancel));
    }
    QList<ProjectSnapshot> projects;
    auto at = asked.begin();
    for (auto it = folders.cbegin(); it != folders.cend(); ++it, ++at) {
        std::optional<ProjectSnapshot> answer = co_await *at;
        if (!answer) {
            answer = ProjectSnapshot{it.key(), {}};
            answer->found.folder = it.value();
            answer->found.problem = discovery::Project::Problem::NoAnswer;
        }
        projects += *std::move(answer);
    }
    co_return projects;
}

} // namespace vorle
