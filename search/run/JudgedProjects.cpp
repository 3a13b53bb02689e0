#include "search/run/JudgedProjects.h"

namespace vorle {

namespace {

QStringList versionLines(const QMap<QString, QString> &versions) {
    QStringList lines;
    for (auto it = versions.cbegin(); it != versions.cend(); ++it) {
        lines += it.key() + u' ' + it.value();
    }
    return lines;
}

} // namespace

QList<JudgeProfile::Project> judgedProjects(const QList<ProjectSnapshot> &projects,
                                            const Settings &settings) {
    QList<JudgeProfile::Project> judged;
    for (const ProjectSnapshot &project : projects) {
        const QString description = settings.projectDescriptions.value(project.name);
        if (project.found.hasFolder() || !description.isEmpty()) {
            judged += {project.shownName(), description, project.found.labels,
                       versionLines(project.versions)};
        }
    }
    return judged;
}

} // namespace vorle
