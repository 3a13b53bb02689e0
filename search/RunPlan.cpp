#include "search/RunPlan.h"

#include "core/Preferences.h"
#include "search/Discovery.h"

#include <QCoreApplication>

namespace vorle {

namespace {

constexpr int candidatesPerProject = 8;
constexpr int candidatesPerTopic = 2;
constexpr int fewestForTopics = 8;
constexpr int mostForTopics = 24;
constexpr int firstRunDays = 7;
constexpr int longestPeriodDays = 31;

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

PlannedScope projectScope(const QString &name, const QString &description,
                          const discovery::Project &found) {
    PlannedScope planned;
    planned.name = name.isEmpty() ? QStringLiteral("a project") : name;
    planned.project = name;
    planned.origin = Origin::Stack;
    if (found.manifest) {
        planned.scope =
            CodeProject{name, description.isEmpty() ? std::nullopt : std::optional(description),
                        found.manifest->name, found.manifest->text};
    } else {
        planned.scope = PlainProject{name, description};
    }
    planned.request.count = candidatesPerProject;
    return planned;
}

std::optional<PlannedScope> interestsScope(const Preferences &preferences) {
    DeclaredInterests interests;
    PlannedScope planned;
    for (const QString &topic : preferences.settings().interests) {
        interests.topics += topicLine(topic, preferences.weightOf(topic));
        planned.topics += topic;
    }
    interests.tools = preferences.settings().addedTools;
    for (const QString &app : preferences.settings().keptApps) {
        if (preferences.appInScope(app)) {
            interests.apps += app;
        }
    }
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

RunPlan planRun(const Preferences &preferences, const QList<TopicPtr> &topics,
                const QDateTime &now) {
    RunPlan plan;
    const auto projects = preferences.settings().projects;
    const auto descriptions = preferences.settings().projectDescriptions;
    for (auto it = projects.cbegin(); it != projects.cend(); ++it) {
        const QString description = descriptions.value(it.key());
        const discovery::Project found = discovery::readProject(it.value());
        plan.scopes += projectScope(it.key(), description, found);
        plan.profile.projects += {it.key(), description, found.labels};
        // A project without a folder is no fault: it was added by its description alone.
        const bool fault = found.problem != discovery::Project::Problem::None &&
                           found.problem != discovery::Project::Problem::NoManifest &&
                           !it.value().isEmpty();
        if (fault) {
            plan.warnings += discovery::problemText(found);
        }
    }
    if (auto interests = interestsScope(preferences)) {
        plan.scopes += *std::move(interests);
    }
    const QStringList known = knownLinks(topics);
    const QStringList sites = trustedAddresses(preferences);
    for (PlannedScope &planned : plan.scopes) {
        const QString sentence = planned.origin == Origin::List
                                     ? stayOnTopicSentence()
                                     : radiusSentence(preferences.radius());
        planned.request.today = now.toLocalTime().date();
        planned.request.since = periodStart(preferences, now);
        planned.request.radius = radiusText(sentence, preferences.settings().exclusions, sites);
        planned.request.knownLinks = known;
    }
    plan.profile.job = preferences.settings().job.value_or(QString());
    for (const QString &topic : preferences.settings().interests) {
        plan.profile.interests += {topic, preferences.weightOf(topic)};
    }
    plan.profile.tools = preferences.settings().addedTools;
    return plan;
}

} // namespace vorle
