#include "app/cli/TopicCards.h"

#include "app/cli/Requirements.h"
#include "app/labels/SectionLabels.h"
#include "app/labels/TopicLabels.h"
#include "app/triage/Gist.h"
#include "app/triage/SectionOrder.h"
#include "base/French.h"
#include "base/FrenchSpacing.h"
#include "base/WebLink.h"
#include "core/Corrections.h"
#include "core/DurationText.h"
#include "core/ScoreScale.h"

namespace vorle::cli {

namespace {

constexpr int cardMargin = 6;

QString scoreDigits(const Topic &topic) {
    const auto score = shownScore(topic);
    return (score ? QString::number(*score) : QStringLiteral("–")).rightJustified(4);
}

/// Those that are not empty, on one line.
QString factLine(QStringList facts) {
    facts.removeAll(QString());
    return facts.join(QStringLiteral(" · ")).simplified(); // a name may hold line breaks
}

QString formerScore(const Topic &topic) {
    const auto former = standingScore(topic).former;
    return former ? French::tr("j’avais mis %1").arg(*former) : QString();
}

} // namespace

QString topicCard(const Console &console, const Topic &topic, const QDate &today, CardScore score) {
    const bool shown = score == CardScore::Shown;
    const QString facts =
        factLine({subjectOf(topic), kindLabel(topic.kind), durationText(topic.minutes),
                  readLevelLabel(topic.readLevel), urgencyLabel(topic.urgency, today),
                  shown ? formerScore(topic) : QString()});
    QStringList lines;
    // The score stands in the margin of the title's first line.
    lines += console.accent(shown ? scoreDigits(topic) : QString(cardMargin - 2, u' ')) +
             QStringLiteral("  ") +
             console.bold(console.wrapped(topic.title, cardMargin).trimmed());
    lines += console.faint(console.wrapped(facts, cardMargin));
    lines += console.wrapped(gistOf(topic), cardMargin);
    if (!topic.why.isEmpty()) {
        lines += console.wrapped(French::tr("Pourquoi toi : ") + topic.why, cardMargin);
    }
    if (!topic.firstStep.isEmpty()) {
        lines += console.wrapped(French::tr("Premier pas : ") + topic.firstStep, cardMargin);
    }
    for (const TopicSource &source : topic.sources) {
        lines += QString(cardMargin, u' ') + console.faint(WebLink::shown(source.url));
    }
    return lines.join(u'\n');
}

QString programLines(const Console &console, const QList<TopicPtr> &topics, const QDate &today) {
    QStringList lines;
    for (const TopicPtr &topic : topics) {
        lines += console.accent(scoreDigits(*topic)) + QStringLiteral("  ") +
                 console.bold(console.wrapped(topic->title, cardMargin).trimmed());
        QString urgency = urgencyLabel(topic->urgency, today);
        if (urgency.isEmpty() && topic->isUrgent()) {
            urgency = French::tr("urgent");
        }
        lines +=
            console.faint(console.wrapped(factLine({durationText(topic->minutes), urgency,
                                                    subjectOf(*topic), identityText(topic->id)}),
                                          cardMargin));
    }
    return lines.join(u'\n');
}

QString openScoreLines(const Console &console, const ScoreExplanation &open) {
    constexpr int labelWidth = 15;
    constexpr int maxGrade = 10;
    const QString indent(cardMargin, u' ');
    QStringList lines{indent + console.bold(open.title)};
    for (const ScoreExplanation::Grade &grade : open.grades) {
        const int filled = std::clamp(grade.grade, 0, maxGrade);
        lines += indent + grade.label.leftJustified(labelWidth) +
                 console.accent(QString(filled, u'█')) +
                 console.faint(QString(maxGrade - filled, u'░')) +
                 QStringLiteral("  %1").arg(grade.grade);
    }
    for (const ScoreExplanation::Fact &fact : open.facts) {
        const QString text = console.wrapped(fact.text, cardMargin + labelWidth).trimmed();
        lines += indent + fact.label.leftJustified(labelWidth) + text;
    }
    return lines.join(u'\n');
}

QString topicCards(const Console &console, const QList<TopicPtr> &topics, const TopicStore &store,
                   const QDate &today) {
    constexpr TopicSection section = TopicSection::Inbox; // where what a run brings back is found
    QList<PlacedTopic> placed;
    for (const TopicPtr &topic : topics) {
        placed += PlacedTopic{.topic = topic, .tier = tierOf(*topic)};
    }
    QStringList blocks;
    QString heading;
    for (const PlacedTopic &each : inOrder(section, placed, store)) {
        if (const QString own = headingOf(section, each); own != heading) {
            blocks += console.bold(own);
            heading = own;
        }
        blocks += topicCard(console, *each.topic, today, CardScore::Shown);
    }
    return blocks.join(QStringLiteral("\n\n"));
}

QString topicLines(const Console &console, const QList<TopicPtr> &topics) {
    QStringList lines;
    for (const TopicPtr &topic : topics) {
        lines += console.accent(scoreDigits(*topic)) + QStringLiteral("  ") +
                 console.plain(frenchSpacing(topic->title.simplified())) + QStringLiteral("  ") +
                 console.faint(statusLabel(topic->status) + QStringLiteral(" · ") +
                               identityText(topic->id));
    }
    return lines.join(u'\n');
}

Task<> showChanged(Context &context, TopicStore &store, QUuid id, QString said) {
    co_await onceSaved(context, store);
    const TopicPtr topic = store.topic(id);
    if (context.arguments.json()) {
        context.console.print(json::encode(*topic, json::Style::Pretty));
    } else {
        context.console.print(context.console.bold(said) + QStringLiteral("  ") +
                              context.console.plain(topic->title));
    }
}

} // namespace vorle::cli
