#include "search/RunPlan.h"

#include "core/Preferences.h"
#include "judging/Learning.h"
#include "search/Discovery.h"
#include "search/LockFile.h"

#include <QCoreApplication>

namespace vorle {

namespace {

constexpr int candidatesPerProject = 8;
constexpr int candidatesPerTopic = 2;
constexpr int fewestForTopics = 8;
constexpr int mostForTopics = 24;
constexpr int firstRunDays = 7;
constexpr int longestPeriodDays = 31;
constexpr int candidatesFromSites = 8;

QDate periodStart(const Preferences &preferences, const QDateTime &now) {
    const QDateTime earliest = now.addDays(-longestPeriodDays);
    const QDateTime last = preferences.settings().lastSearch.value_or(now.addDays(-firstRunDays));
    // A clock that was turned back would otherwise ask for news from the future.
    return std::clamp(last, earliest, now).toLocalTime().date();
}

QStringList trustedAddresses(const Preferences &preferences) {
    QStringList addresses;
    for (const PrioritySite &site : preferences.settings().prioritySites) {
        addresses += site.address;
    }
    return addresses;
}

QString shownName(const ProjectReading &project) {
    return project.name.isEmpty() ? QStringLiteral("a project") : project.name;
}

PlannedScope projectScope(const ProjectReading &project, const QString &description) {
    const discovery::Project &found = project.found;
    PlannedScope planned;
    planned.name = shownName(project);
    if (!project.name.isEmpty()) {
        planned.project = project.name;
    }
    planned.origin = Origin::Stack;
    planned.versions = project.versions;
    if (found.manifest) {
        planned.scope = CodeProject{
            planned.name, description.isEmpty() ? std::nullopt : std::optional(description),
            found.manifest->name, found.manifest->text};
    } else {
        planned.scope = PlainProject{planned.name, description};
    }
    planned.request.count = candidatesPerProject;
    return planned;
}

/// A project without a folder is no fault: it was added by its description alone.
bool isFault(const discovery::Project &found) {
    return found.problem != discovery::Project::Problem::None &&
           found.problem != discovery::Project::Problem::NoManifest && !found.folder.isEmpty();
}

QStringList versionLines(const QMap<QString, QString> &versions) {
    QStringList lines;
    for (auto it = versions.cbegin(); it != versions.cend(); ++it) {
        lines += it.key() + u' ' + it.value();
    }
    return lines;
}

/// The apps the user lets be told. Of all on the machine where only some are kept back, names that
/// are no names are left out: anybody may install one.
QStringList appsInScope(const Preferences &preferences, const QStringList &installed) {
    constexpr qsizetype mostApps = 200;
    constexpr qsizetype longestName = 80;
    if (preferences.settings().accessMode == AccessMode::Only) {
        return preferences.settings().keptApps;
    }
    QStringList names;
    for (const QString &name : installed) {
        const QString bare = name.simplified();
        if (preferences.appInScope(name) && bare.size() <= longestName && names.size() < mostApps) {
            names += bare;
        }
    }
    names.removeDuplicates();
    return names;
}

std::optional<PlannedScope> interestsScope(const Preferences &preferences,
                                           const QStringList &installed) {
    DeclaredInterests interests;
    PlannedScope planned;
    for (const QString &topic : preferences.settings().interests) {
        interests.topics += topicLine(topic, preferences.weightOf(topic));
        planned.topics += topic;
    }
    interests.tools = preferences.settings().addedTools;
    interests.apps = appsInScope(preferences, installed);
    if (interests.topics.isEmpty() && interests.tools.isEmpty()) {
        return std::nullopt;
    }
    const int wanted = candidatesPerTopic * static_cast<int>(interests.topics.size());
    planned.name = QCoreApplication::translate("RunPlan", "Tes sujets");
    planned.origin = Origin::List;
    planned.request.count = std::clamp(wanted, fewestForTopics, mostForTopics);
    planned.scope = std::move(interests);
    return planned;
}

} // namespace

PlannedScope secondSearch(const PlannedScope &first, const QStringList &emptyTopics,
                          const QStringList &found) {
    PlannedScope second = first;
    second.scope = EmptyTopics{emptyTopics};
    second.topics = emptyTopics;
    second.origin = Origin::Suggestion;
    second.request.count =
        std::min(candidatesPerTopic * static_cast<int>(emptyTopics.size()), mostForTopics);
    second.request.knownLinks = found + first.request.knownLinks;
    return second;
}

bool hasTerritory(const Preferences &preferences) {
    return !preferences.settings().projects.isEmpty() ||
           !preferences.settings().interests.isEmpty();
}

QString emptyTerritoryText() {
    return QCoreApplication::translate(
        "RunPlan",
        "Rien à fouiller : ajoute un dossier de projet ou un sujet dans Ton territoire.");
}

QStringList knownLinks(const QList<TopicPtr> &topics) {
    QList<TopicPtr> newestFirst = topics;
    std::stable_sort(newestFirst.begin(), newestFirst.end(),
                     [](const TopicPtr &a, const TopicPtr &b) { return a->foundAt > b->foundAt; });
    QStringList links;
    QSet<QString> seen;
    const auto take = [&](const QString &link) {
        if (!link.isEmpty() && !seen.contains(link)) {
            seen.insert(link);
            links += link;
        }
    };
    for (const TopicPtr &topic : newestFirst) {
        for (const TopicSource &source : topic->sources) {
            take(source.url);
        }
        take(topic->capturedURL.value_or(QString()));
    }
    return links;
}

QList<ProjectReading> readProjects(const QMap<QString, QString> &folders) {
    QList<ProjectReading> projects;
    for (auto it = folders.cbegin(); it != folders.cend(); ++it) {
        ProjectReading project{it.key(), discovery::readProject(it.value()), {}};
        if (project.found.manifest) {
            project.versions = versionsInUse(project.found.folder, *project.found.manifest);
        }
        projects += std::move(project);
    }
    return projects;
}

RunPlan planRun(const Preferences &preferences, const QList<ProjectReading> &projects,
                const QList<TopicPtr> &topics, const QDateTime &now,
                const QStringList &installedApps) {
    const Settings &settings = preferences.settings();
    RunPlan plan;
    for (const ProjectReading &project : projects) {
        const QString description = settings.projectDescriptions.value(project.name);
        plan.scopes += projectScope(project, description);
        plan.profile.projects +=
            {shownName(project), description, project.found.labels, versionLines(project.versions)};
        plan.sites.projects += description.isEmpty()
                                   ? shownName(project)
                                   : shownName(project) + QStringLiteral(": ") + description;
        if (isFault(project.found)) {
            plan.warnings += discovery::problemText(project.found);
        }
    }
    if (auto interests = interestsScope(preferences, installedApps)) {
        plan.scopes += *std::move(interests);
    }
    const QStringList known = knownLinks(topics);
    const QStringList trusted = trustedAddresses(preferences);
    for (PlannedScope &planned : plan.scopes) {
        const QString sentence = planned.origin == Origin::List
                                     ? stayOnTopicSentence()
                                     : radiusSentence(preferences.radius());
        planned.request.today = now.toLocalTime().date();
        planned.request.since = periodStart(preferences, now);
        planned.request.radius = radiusText(sentence, settings.exclusions, trusted);
        planned.request.knownLinks = known;
    }
    plan.profile.job = settings.job.value_or(QString());
    for (const QString &topic : settings.interests) {
        plan.profile.interests += {topic, preferences.weightOf(topic)};
    }
    plan.profile.tools = settings.addedTools;
    plan.reflexes = activeReflexes(learn(topics, settings).reflexes, settings);
    for (const Reflex &reflex : plan.reflexes) {
        plan.reflexLines += reflex.instruction;
    }
    plan.sites.sites = settings.prioritySites;
    plan.sites.today = now.toLocalTime().date();
    plan.sites.interests = settings.interests;
    plan.sites.tools = settings.addedTools;
    plan.sites.count = candidatesFromSites;
    plan.sites.knownLinks = known;
    return plan;
}

} // namespace vorle
