#include "app/cli/Handlers.h"
#include "app/cli/Requirements.h"
#include "app/territory/TerritoryEdit.h"
#include "base/French.h"
#include "core/NumberText.h"
#include "core/Preferences.h"
#include "search/discovery/ProjectSnapshot.h"

#include <QDir>
#include <QFileInfo>

namespace vorle::cli {

namespace {

struct ProjectShown {
    QString name;
    QString folder;
    QString description;
    std::optional<QString> manifest;
    QList<QString> labels;
    int dependencies = 0;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("name", &ProjectShown::name),
                          json::field("folder", &ProjectShown::folder),
                          json::field("description", &ProjectShown::description),
                          json::field("manifest", &ProjectShown::manifest),
                          json::field("labels", &ProjectShown::labels),
                          json::field("dependencies", &ProjectShown::dependencies));
    }
};

/// "package.json · 3 dépendances · React, TypeScript".
QString manifestLine(const discovery::Project &project) {
    QStringList facts{project.manifest->name,
                      project.dependencies < 2
                          ? French::tr("%1 dépendance").arg(numberText(project.dependencies))
                          : French::tr("%1 dépendances").arg(numberText(project.dependencies))};
    if (!project.labels.isEmpty()) {
        facts += project.labels.join(QStringLiteral(", "));
    }
    return facts.join(QStringLiteral(" · "));
}

/// Folders may have any name.
QString oneLine(QString text) { return text.replace(u'\n', u' ').replace(u'\r', u' '); }

Task<> listProjects(Context &context, const Preferences &preferences) {
    const Settings &settings = preferences.settings();
    const QList<ProjectSnapshot> asked = co_await askProjects(settings.projects, context.cancel);
    QList<ProjectShown> shown;
    QStringList lines;
    for (const ProjectSnapshot &project : asked) {
        const discovery::Project &found = project.found;
        const QString description = settings.projectDescriptions.value(project.name);
        shown += {project.name, found.folder,
                  description,  found.manifest ? std::optional(found.manifest->name) : std::nullopt,
                  found.labels, found.dependencies};
        lines += context.console.bold(project.name.simplified()) +
                 (description.isEmpty()
                      ? QString()
                      : context.console.plain(QStringLiteral(", ") + description.simplified()));
        lines += QStringLiteral("  ") + context.console.faint(oneLine(found.folder));
        const QString problem = discovery::problemText(found);
        lines +=
            QStringLiteral("  ") + (problem.isEmpty() ? manifestLine(found) : oneLine(problem));
    }
    if (context.arguments.json()) {
        context.console.print(json::encode(shown, json::Style::Pretty));
    } else if (lines.isEmpty()) {
        context.console.say(French::tr("Aucun projet suivi. Ajoute un dossier : vorle projet "
                                       "ajouter DOSSIER"));
    } else {
        context.console.print(lines.join(u'\n'));
    }
}

/// @throws Failure with the sentence of a change that was refused
void require(const territory::Refusal &refusal) {
    if (refusal) {
        throw Failure(*refusal);
    }
}

/// The folder as the disk spells it, with what it holds.
discovery::Project readFolder(const QString &folder) {
    const QString path = QFileInfo(folder).canonicalFilePath();
    return discovery::readProject(path.isEmpty() ? folder : path);
}

Task<> addProject(Context &context, Preferences &preferences, QString folder) {
    const auto answer = co_await onDisk([folder] { return readFolder(folder); });
    discovery::Project found = answer.value_or(discovery::Project());
    if (!answer) {
        found.folder = folder;
        found.problem = discovery::Project::Problem::NoAnswer;
    }
    if (!answer || found.problem == discovery::Project::Problem::NoFolder) {
        throw Failure(discovery::problemText(found));
    }
    const QString path = found.folder;
    const QString name = territory::oneLine(
        context.arguments.options.value(QStringLiteral("nom"), QDir(path).dirName()));
    if (name.isEmpty()) {
        throw Failure(French::tr("Donne un nom au projet : --nom NOM"), ExitStatus::Usage);
    }
    if (auto refusal = territory::addProject(preferences, name, path)) {
        const bool isFollowed = territory::projectAt(preferences.settings(), path).has_value();
        throw Failure(isFollowed
                          ? *refusal
                          : *refusal + u' ' + French::tr("Choisis un autre nom avec --nom."));
    }
    requireSaved(preferences);
    if (context.arguments.options.contains(QStringLiteral("description"))) {
        require(territory::setDescription(
            preferences, name, context.arguments.options[QStringLiteral("description")]));
        requireSaved(preferences);
    }
    if (found.problem != discovery::Project::Problem::None) {
        context.console.say(oneLine(discovery::problemText(found)));
    }
}

void removeProject(Preferences &preferences, const QString &name) {
    if (!territory::removeProject(preferences, name)) {
        throw Failure(French::tr("Aucun projet ne s’appelle « %1 ».").arg(name));
    }
    requireSaved(preferences);
}

} // namespace

Task<ExitStatus> projet(Context &context, OnDemand<Preferences> preferences) {
    const QStringList &words = context.arguments.positional;
    if (words.isEmpty()) {
        co_await listProjects(context, *preferences);
        co_return ExitStatus::Done;
    }
    if (words.size() != 2 || (words[0] != u"ajouter" && words[0] != u"retirer")) {
        throw Failure(French::tr("Usage : vorle projet [ajouter DOSSIER [--nom N] "
                                 "[--description D] | retirer NOM]"),
                      ExitStatus::Usage);
    }
    if (words[0] == u"ajouter") {
        co_await addProject(context, *preferences, words[1]);
    } else {
        removeProject(*preferences, words[1]);
    }
    co_await listProjects(context, *preferences);
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
