#include "app/demo/agent/Scout.h"

#include "app/demo/agent/PromptReader.h"

#include <QSet>

#include <algorithm>

namespace vorle::demo {

namespace {

/// The pages found for one subject, and the subject as the answer spells it.
struct ScoutResult {
    QString about;
    QList<DemoPage> pages;
};

QList<ScoutResult> projectResults(const ScopeRead &scope, const DemoCatalogue &catalogue) {
    QList<ScoutResult> results;
    for (const QString &dependency : scope.dependencies) {
        results += ScoutResult{dependency, catalogue.named(dependency)};
    }
    results +=
        ScoutResult{scope.project, catalogue.about(scope.project + u' ' + scope.description)};
    const bool nothing = std::all_of(results.begin(), results.end(), [](const ScoutResult &result) {
        return result.pages.isEmpty();
    });
    if (nothing) {
        const qsizetype several = std::min<qsizetype>(3, scope.dependencies.size());
        for (ScoutResult &result : results) {
            if (&result == &results.last() || &result < results.data() + several) {
                result.pages = catalogue.madeFor(result.about).first(2);
            }
        }
    }
    return results;
}

QList<ScoutResult> topicResults(const ScopeRead &scope, const DemoCatalogue &catalogue) {
    QList<ScoutResult> results;
    for (const auto &interest : scope.interests) {
        ScoutResult result{interest.topic, catalogue.about(interest.topic)};
        if (result.pages.size() < 2) {
            result.pages += catalogue.madeFor(interest.topic).first(interest.weight >= 4 ? 3 : 2);
        }
        results += result;
    }
    const auto lighter = [&](const auto &a, const auto &b) { return a.weight < b.weight; };
    const auto lightest = std::min_element(scope.interests.begin(), scope.interests.end(), lighter);
    if (!scope.second && scope.interests.size() >= 3) {
        results[lightest - scope.interests.begin()].pages.clear();
    }
    for (const QString &tool : scope.tools) {
        results += ScoutResult{tool, catalogue.named(tool)};
    }
    return results;
}

} // namespace

FoundAnswer scout(const QHash<QString, QString> &values, const DemoCatalogue &catalogue,
                  const QString &site) {
    const ScopeRead scope = readScope(values.value(QStringLiteral("@SCOPE")));
    const qsizetype count = values.value(QStringLiteral("@COUNT")).toInt();
    const QStringList known = values.value(QStringLiteral("@KNOWN")).split(QStringLiteral(" ; "));
    QSet<QString> taken(known.begin(), known.end());

    const QList<ScoutResult> results =
        scope.project.isEmpty() ? topicResults(scope, catalogue) : projectResults(scope, catalogue);
    qsizetype rounds = 0;
    for (const ScoutResult &result : results) {
        rounds = std::max(rounds, result.pages.size());
    }
    FoundAnswer answer;
    // One page of each subject in turn: when the number is short, no subject goes without.
    for (qsizetype round = 0; round < rounds; ++round) {
        for (const ScoutResult &result : results) {
            if (round >= result.pages.size() || answer.candidates.size() >= count) {
                continue;
            }
            const DemoPage &page = result.pages[round];
            const QString url = site + page.path;
            if (!taken.contains(url)) {
                taken.insert(url);
                answer.candidates += Found{page.headline, url, page.kind, result.about};
            }
        }
    }
    return answer;
}

} // namespace vorle::demo
