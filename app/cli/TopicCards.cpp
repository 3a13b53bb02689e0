#include "app/cli/TopicCards.h"

#include "app/TopicLabels.h"
#include "core/ScoreScale.h"

namespace vorle::cli {

namespace {

constexpr int margin = 6;

QString scoreDigits(const Topic &topic) {
    const auto score = shownScore(topic);
    return (score ? QString::number(*score) : QStringLiteral("–")).rightJustified(4);
}

QString card(const Console &console, const Topic &topic, const QDate &today) {
    QStringList facts;
    const auto add = [&](const QString &fact) {
        if (!fact.isEmpty()) {
            facts += fact;
        }
    };
    add(topic.project.value_or(topic.interest.value_or(QString())));
    add(kindLabel(topic.kind));
    add(durationLabel(topic.minutes));
    add(readLevelLabel(topic.readLevel));
    add(urgencyLabel(topic.urgency, today));

    QStringList lines;
    // The score stands in the margin of the title's first line.
    lines += console.accent(scoreDigits(topic)) + QStringLiteral("  ") +
             console.bold(console.wrapped(topic.title, margin).trimmed());
    lines += console.faint(console.wrapped(facts.join(QStringLiteral(" · ")), margin));
    const QString &gist = topic.summary.isEmpty() ? topic.tldr.value_or(QString()) : topic.summary;
    lines += console.wrapped(gist, margin);
    if (!topic.why.isEmpty()) {
        lines += console.wrapped(QStringLiteral("Pourquoi toi : ") + topic.why, margin);
    }
    if (!topic.firstStep.isEmpty()) {
        lines += console.wrapped(QStringLiteral("Premier pas : ") + topic.firstStep, margin);
    }
    for (const TopicSource &source : topic.sources) {
        lines += QString(margin, u' ') + console.faint(source.url);
    }
    return lines.join(u'\n');
}

} // namespace

QString topicCards(const Console &console, QList<TopicPtr> topics, const QDate &today) {
    std::stable_sort(topics.begin(), topics.end(), [](const TopicPtr &a, const TopicPtr &b) {
        const Tier left = tierOf(*a);
        const Tier right = tierOf(*b);
        return left != right ? left < right : a->score > b->score;
    });
    QStringList blocks;
    std::optional<Tier> shown;
    for (const TopicPtr &topic : topics) {
        if (const Tier tier = tierOf(*topic); tier != shown) {
            blocks += console.bold(tierLabel(tier));
            shown = tier;
        }
        blocks += card(console, *topic, today);
    }
    return blocks.join(QStringLiteral("\n\n"));
}

QString topicLines(const Console &console, const QList<TopicPtr> &topics) {
    QStringList lines;
    for (const TopicPtr &topic : topics) {
        lines += console.accent(scoreDigits(*topic)) + QStringLiteral("  ") +
                 console.plain(topic->title) + QStringLiteral("  ") +
                 console.faint(statusLabel(topic->status) + QStringLiteral(" · ") +
                               topic->id.toString(QUuid::WithoutBraces).toUpper());
    }
    return lines.join(u'\n');
}

} // namespace vorle::cli
