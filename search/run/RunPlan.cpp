#include "search/run/RunPlan.h"

#include "core/Preferences.h"
#include "search/feeds/Feeds.h"

#include <QCoreApplication>

#include <algorithm>

namespace vorle {

namespace {

constexpr int candidatesPerProject = 8;
constexpr int candidatesPerTopic = 2;
constexpr int minForTopics = 8;
constexpr int maxForTopics = 24;
constexpr int firstRunDays = 7;
constexpr int maxPeriodDays = 31;
constexpr int candidatesFromSites = 8;
/// How far back the candidates instruction lets a declared topic go.
constexpr int slowTopicMonths = 3;

QStringList trustedAddresses(const Preferences &preferences) {
    QStringList addresses;
    for (const PrioritySite &site : preferences.settings().prioritySites) {
        addresses += site.address;
    }
    return addresses;
}

PlannedScope projectScope(const ProjectSnapshot &project, const QString &description) {
    const discovery::Project &found = project.found;
    PlannedScope planned;
    planned.name = project.shownName();
    if (!project.name.isEmpty()) {
        planned.project = project.name;
    }
    planned.origin = Origin::Stack;
    planned.dependencies = project.dependencies;
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

/// Why nothing is asked of a project: it has no folder to look into and no description, and its
/// name alone says nothing to search for. Empty when something is known of it.
QString unknownText(const QString &name, const QString &description,
                    const discovery::Project &found) {
    if (found.hasFolder() || !description.isEmpty()) {
        return {};
    }
    if (!found.folder.isEmpty()) {
        return discovery::problemText(found);
    }
    const QString project =
        name.isEmpty() ? QCoreApplication::translate("RunPlan", "Un projet sans nom")
                       : QCoreApplication::translate("RunPlan", "Le projet « %1 »").arg(name);
    return QCoreApplication::translate("RunPlan", "%1 n’a ni dossier ni description : je ne sais "
                                                  "pas quoi chercher pour lui.")
        .arg(project);
}

/// The apps the user lets be told. Of all on the machine where only some are kept back, names that
/// are no names are left out: anybody may install one.
QStringList appsInScope(const Preferences &preferences, const QStringList &installed) {
    constexpr qsizetype maxApps = 200;
    constexpr qsizetype maxNameCharacters = 80;
    if (preferences.settings().accessMode == AccessMode::Only) {
        return preferences.settings().keptApps;
    }
    QStringList names;
    for (const QString &name : installed) {
        const QString bare = name.simplified();
        if (preferences.appInScope(name) && bare.size() <= maxNameCharacters &&
            names.size() < maxApps) {
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
    planned.request.count = std::clamp(wanted, minForTopics, maxForTopics);
    planned.scope = std::move(interests);
    return planned;
}

QStringList territoryNames(const Settings &settings, const QList<ProjectSnapshot> &projects) {
    QStringList names = settings.interests + settings.addedTools;
    for (const ProjectSnapshot &project : projects) {
        names += project.name;
        names += project.dependencies;
    }
    names.removeAll(QString());
    names.removeDuplicates();
    return names;
}

/// All but the projects.
void fillSites(SitesRequest &sites, const Settings &settings, const QList<TopicPtr> &topics,
               const QDate &today) {
    sites.sites = settings.prioritySites;
    sites.today = today;
    sites.interests = settings.interests;
    sites.tools = settings.addedTools;
    sites.exclusions = settings.exclusions;
    sites.count = candidatesFromSites;
    sites.knownLinks = knownLinks(topics, today.addDays(-newestDays));
    sites.allKnownLinks = knownLinks(topics);
}

} // namespace

PlannedScope secondSearch(const PlannedScope &first, const QStringList &emptyTopics,
                          const QStringList &found) {
    PlannedScope second = first;
    second.scope = EmptyTopics{emptyTopics};
    second.topics = emptyTopics;
    second.origin = Origin::Suggestion;
    second.request.count =
        std::min(candidatesPerTopic * static_cast<int>(emptyTopics.size()), maxForTopics);
    second.request.knownLinks = found + first.request.knownLinks;
    return second;
}

QDateTime periodStart(const Settings &settings, const QDateTime &now) {
    const QDateTime earliest = now.addDays(-maxPeriodDays);
    const QDateTime last = settings.lastSearch.value_or(now.addDays(-firstRunDays));
    // A clock that was turned back would otherwise ask for news from the future.
    return std::clamp(std::min(last, settings.searchedUntil.value_or(last)), earliest, now);
}

QDateTime periodStart(const Settings &settings, const QDateTime &now,
                      const std::optional<QDateTime> &since) {
    const QDateTime own = periodStart(settings, now);
    return since ? std::clamp(std::min(own, *since), now.addDays(-maxPeriodDays), now) : own;
}

QString refusalText(const Preferences &preferences) {
    const QMap<QString, QString> &folders = preferences.settings().projects;
    QList<ProjectSnapshot> believed;
    for (auto it = folders.cbegin(); it != folders.cend(); ++it) {
        believed += ProjectSnapshot{it.key(), {}};
        believed.last().found.folder = it.value();
        believed.last().found.problem = it.value().isEmpty() ? discovery::Project::Problem::NoFolder
                                                             : discovery::Project::Problem::None;
    }
    return refusalText(preferences, believed);
}

QString refusalText(const Preferences &preferences, const QList<ProjectSnapshot> &projects) {
    const Settings &settings = preferences.settings();
    if (settings.projects.isEmpty() && settings.interests.isEmpty()) {
        return QCoreApplication::translate(
            "RunPlan",
            "Rien à fouiller : ajoute un dossier de projet ou un sujet dans Ton territoire.");
    }
    if (!settings.interests.isEmpty() || !settings.addedTools.isEmpty()) {
        return {};
    }
    QStringList reasons;
    for (const ProjectSnapshot &project : projects) {
        const QString reason = unknownText(
            project.name, settings.projectDescriptions.value(project.name), project.found);
        if (reason.isEmpty()) {
            return {};
        }
        reasons += reason;
    }
    return reasons.join(u' ');
}

bool dependsOnFolders(const Preferences &preferences) {
    const Settings &settings = preferences.settings();
    return settings.interests.isEmpty() && settings.addedTools.isEmpty() &&
           std::ranges::all_of(settings.projects.keys(), [&](const QString &name) {
               return settings.projectDescriptions.value(name).isEmpty();
           });
}

QStringList knownLinks(const QList<TopicPtr> &topics, const QDate &since) {
    const auto isOlder = [&](const TopicPtr &topic) {
        const QDate published =
            QDate::fromString(topic->publishedOn.value_or(QString()), Qt::ISODate);
        return since.isValid() && (topic->foundAt.toLocalTime().date() < since ||
                                   (published.isValid() && published < since));
    };
    QList<TopicPtr> newestFirst = topics;
    newestFirst.removeIf(isOlder);
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

RunPlan planRun(const Preferences &preferences, const QList<ProjectSnapshot> &projects,
                const QList<TopicPtr> &topics, const QDateTime &now,
                const QStringList &installedApps, const std::optional<QDateTime> &earlier) {
    const Settings &settings = preferences.settings();
    RunPlan plan;
    for (const ProjectSnapshot &project : projects) {
        const QString description = settings.projectDescriptions.value(project.name);
        const QString unknown = unknownText(project.name, description, project.found);
        if (!unknown.isEmpty()) {
            plan.warnings += unknown;
            continue;
        }
        if (isFault(project.found)) {
            plan.warnings += discovery::problemText(project.found);
        }
        plan.scopes += projectScope(project, description);
        plan.sites.projects += description.isEmpty()
                                   ? project.shownName()
                                   : project.shownName() + QStringLiteral(": ") + description;
    }
    if (auto interests = interestsScope(preferences, installedApps)) {
        plan.scopes += *std::move(interests);
    } else if (settings.accessMode == AccessMode::Only && !settings.keptApps.isEmpty()) {
        plan.warnings += QCoreApplication::translate(
            "RunPlan", "Les apps que tu as gardées ne font qu’accompagner la recherche de tes "
                       "sujets et de tes outils : tu n’en as déclaré aucun, je n’en ai rien fait.");
    }
    const QStringList names = territoryNames(settings, projects);
    const QDate since = periodStart(settings, now, earlier).toLocalTime().date();
    const QDate today = now.toLocalTime().date();
    const QStringList inPeriod = knownLinks(topics, since);
    // A declared topic where nothing happened may have an older page.
    const QStringList lookingBack = knownLinks(topics, today.addMonths(-slowTopicMonths));
    const QStringList trusted = trustedAddresses(preferences);
    for (PlannedScope &planned : plan.scopes) {
        const QString sentence = planned.origin == Origin::List
                                     ? stayOnTopicSentence()
                                     : radiusSentence(preferences.radius());
        planned.request.today = today;
        planned.request.since = since;
        planned.request.radius = radiusText(sentence, settings.exclusions, trusted);
        planned.request.knownLinks = planned.origin == Origin::List ? lookingBack : inPeriod;
        planned.names = names;
    }
    plan.warnings.removeAll(QString());
    fillSites(plan.sites, settings, topics, today);
    return plan;
}

} // namespace vorle
