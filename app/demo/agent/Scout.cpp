#include "app/demo/agent/Scout.h"

#include "app/demo/agent/PromptReader.h"

#include <QSet>

#include <algorithm>

namespace vorle::demo {

namespace {

/// The pages found for one subject, and the subject as the answer spells it.
struct Haul {
    QString about;
    QList<DemoPage> pages;
};

QList<Haul> projectHauls(const ScopeRead &scope, const DemoCatalogue &catalogue) {
    QList<Haul> hauls;
    for (const QString &dependency : scope.dependencies) {
        hauls += Haul{dependency, catalogue.named(dependency)};
    }
    hauls += Haul{scope.project, catalogue.about(scope.project + u' ' + scope.description)};
    const bool nothing = std::all_of(hauls.begin(), hauls.end(),
                                     [](const Haul &haul) { return haul.pages.isEmpty(); });
    if (nothing) {
        const qsizetype several = std::min<qsizetype>(3, scope.dependencies.size());
        for (Haul &haul : hauls) {
            if (&haul == &hauls.last() || &haul < hauls.data() + several) {
                haul.pages = catalogue.madeFor(haul.about).first(2);
            }
        }
    }
    return hauls;
}

QList<Haul> topicHauls(const ScopeRead &scope, const DemoCatalogue &catalogue) {
    QList<Haul> hauls;
    for (const auto &interest : scope.interests) {
        Haul haul{interest.topic, catalogue.about(interest.topic)};
        if (haul.pages.size() < 2) {
            haul.pages += catalogue.madeFor(interest.topic).first(interest.weight >= 4 ? 3 : 2);
        }
        hauls += haul;
    }
    const auto lighter = [&](const auto &a, const auto &b) { return a.weight < b.weight; };
    const auto lightest = std::min_element(scope.interests.begin(), scope.interests.end(), lighter);
    if (!scope.second && scope.interests.size() >= 3) {
        hauls[lightest - scope.interests.begin()].pages.clear();
    }
    for (const QString &tool : scope.tools) {
        hauls += Haul{tool, catalogue.named(tool)};
    }
    return hauls;
}

} // namespace

FoundAnswer scout(const QHash<QString, QString> &values, const DemoCatalogue &catalogue,
                  const QString &site) {
    const ScopeRead scope = readScope(values.value(QStringLiteral("@SCOPE")));
    const qsizetype count = values.value(QStringLiteral("@COUNT")).toInt();
    const QStringList known = values.value(QStringLiteral("@KNOWN")).split(QStringLiteral(" ; "));
    QSet<QString> taken(known.begin(), known.end());

    const QList<Haul> hauls =
        scope.project.isEmpty() ? topicHauls(scope, catalogue) : projectHauls(scope, catalogue);
    qsizetype rounds = 0;
    for (const Haul &haul : hauls) {
        rounds = std::max(rounds, haul.pages.size());
    }
    FoundAnswer answer;
    // One page of each subject in turn: when the number is short, no subject goes without.
    for (qsizetype round = 0; round < rounds; ++round) {
        for (const Haul &haul : hauls) {
            if (round >= haul.pages.size() || answer.candidates.size() >= count) {
                continue;
            }
            const DemoPage &page = haul.pages[round];
            const QString url = site + page.path;
            if (!taken.contains(url)) {
                taken.insert(url);
                answer.candidates += Found{page.headline, url, page.kind, haul.about};
            }
        }
    }
    return answer;
}

} // namespace vorle::demo
