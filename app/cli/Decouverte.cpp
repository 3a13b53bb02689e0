// What vorle can tell by itself of a folder, or of the machine and its person.

#include "app/cli/Handlers.h"
#include "base/French.h"
#include "core/NumberText.h"
#include "core/Preferences.h"
#include "search/discovery/Discovery.h"

namespace vorle::cli {

namespace {

struct FolderShown {
    std::optional<QString> manifest;
    QList<QString> labels;
    int dependencies = 0;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("manifest", &FolderShown::manifest),
                          json::field("labels", &FolderShown::labels),
                          json::field("dependencies", &FolderShown::dependencies));
    }
};

struct AppShown {
    QString name;
    QString location;
    std::optional<QString> category;
    bool leisure = false;
    bool tool = false; ///< proposed as a tool

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("name", &AppShown::name), json::field("location", &AppShown::location),
            json::field("category", &AppShown::category),
            json::field("leisure", &AppShown::leisure), json::field("tool", &AppShown::tool));
    }
};

struct MachineShown {
    QList<AppShown> apps;
    QString job;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("apps", &MachineShown::apps),
                          json::field("job", &MachineShown::job));
    }
};

ExitStatus showFolder(const Context &context, const QString &folder) {
    const discovery::Project project = discovery::readProject(folder);
    if (project.problem == discovery::Project::Problem::NoFolder) {
        throw Failure(discovery::problemText(project));
    }
    if (context.arguments.json()) {
        const FolderShown shown{project.manifest ? std::optional(project.manifest->name)
                                                 : std::nullopt,
                                project.labels, project.dependencies};
        context.console.print(json::encode(shown, json::Style::Pretty));
    } else if (project.manifest) {
        const QString labels = project.labels.isEmpty() ? French::tr("aucune technologie reconnue")
                                                        : project.labels.join(QStringLiteral(", "));
        const QString count =
            project.dependencies < 2 ? French::tr("%1 dépendance") : French::tr("%1 dépendances");
        context.console.print(
            QStringList{project.manifest->name, labels, count.arg(numberText(project.dependencies))}
                .join(QStringLiteral(" · ")));
    }
    if (project.problem != discovery::Project::Problem::None) {
        context.console.say(discovery::problemText(project));
    }
    return ExitStatus::Done;
}

MachineShown machine(const Preferences &preferences, const QList<discovery::App> &apps) {
    const QStringList tools = discovery::proposedTools(apps);
    MachineShown shown;
    const QStringList names = discovery::namesOf(apps);
    for (const discovery::App &app : apps) {
        shown.apps += {app.name, app.location, app.category, discovery::isLeisureApp(app),
                       tools.contains(app.name)};
    }
    QStringList labels;
    for (const QString &folder : preferences.settings().projects) {
        labels += discovery::readProject(folder).labels;
    }
    shown.job = discovery::jobTitle(labels, names);
    return shown;
}

ExitStatus showMachine(const Context &context, const MachineShown &shown) {
    const Console &console = context.console;
    if (context.arguments.json()) {
        console.print(json::encode(shown, json::Style::Pretty));
        return ExitStatus::Done;
    }
    for (const AppShown &app : shown.apps) {
        console.print(app.tool
                          ? console.bold(app.name) + console.faint(French::tr("  outil proposé"))
                      : app.leisure ? console.faint(app.name + French::tr("  loisir"))
                                    : console.plain(app.name));
    }
    console.print(French::tr("Métier proposé : ") + console.bold(shown.job));
    if (shown.apps.isEmpty()) {
        context.console.say(French::tr("Aucune application trouvée."));
    }
    return ExitStatus::Done;
}

} // namespace

Task<ExitStatus> decouverte(Context &context, OnDemand<Preferences> preferences,
                            InstalledAppsList apps) {
    const QStringList &folders = context.arguments.positional;
    co_return folders.isEmpty() ? showMachine(context, machine(*preferences, apps()))
                                : showFolder(context, folders.first());
}

} // namespace vorle::cli
