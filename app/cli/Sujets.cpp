#include "app/cli/Handlers.h"
#include "app/cli/TopicArgument.h"
#include "app/cli/TopicCards.h"
#include "app/labels/ScoreExplanation.h"
#include "app/triage/ReserveActivity.h"
#include "app/triage/SectionOrder.h"
#include "base/French.h"
#include "core/Preferences.h"
#include "core/RediscoveryLog.h"
#include "core/ScoreProvenanceLog.h"
#include "core/WeekProgram.h"

#include <QSet>

namespace vorle::cli {

namespace {

/// A topic, with what stood behind its score.
struct OpenedTopic : Topic {
    std::optional<ScoreProvenance> provenance;

    static constexpr auto jsonFields() {
        return std::tuple_cat(Topic::jsonFields(),
                              std::tuple(json::field("scoreNote", &OpenedTopic::provenance)));
    }
};

void openTopic(Context &context, const TopicStore &store, const OnDemand<ScoreProvenanceLog> &log,
               const Clock &clock) {
    const TopicPtr topic = topicByPrefix(store, context.arguments.positional.first());
    const auto provenance = log->of(topic->id);
    if (context.arguments.json()) {
        context.console.print(json::encode(OpenedTopic{{*topic}, provenance}, json::Style::Pretty));
        return;
    }
    const QDate today = clock.now().toLocalTime().date();
    const Console &console = context.console;
    console.print(topicCard(console, *topic, today, CardScore::Shown) + u'\n');
    console.print(openScoreLines(console, openScore(*topic, provenance, today)));
}

/// The topics of one status, as the window's section of it lists them. Those of no section stand as
/// the store has them.
QList<TopicPtr> topicsOf(TopicStatus status, const TopicStore &store,
                         const OnDemand<Preferences> &preferences,
                         const OnDemand<RediscoveryLog> &rediscoveries, const Clock &clock) {
    QList<TopicPtr> topics = store.topics(status);
    const auto section = sectionOf(status);
    if (!section) {
        return topics;
    }
    ReserveActivity activity;
    QList<TopicPtr> waiting;
    if (section == TopicSection::Reserve) {
        activity.observe(*rediscoveries);
        activity.load(store);
    } else if (section == TopicSection::Program) {
        waiting = weekProgram(store.topics(), preferences->settings().weeklyMinutes,
                              calendarWeek(clock.now()))
                      .waits;
    }
    const QSet<TopicPtr> waits(waiting.cbegin(), waiting.cend());
    QList<PlacedTopic> placed;
    for (const TopicPtr &topic : std::as_const(topics)) {
        placed += PlacedTopic{.topic = topic,
                              .tier = tierOf(*topic),
                              .moved = section == TopicSection::Reserve &&
                                       activity.hasMoved(*topic, store),
                              .waits = waits.contains(topic)};
    }
    topics.clear();
    for (const PlacedTopic &each : inOrder(*section, placed, store)) {
        topics += each.topic;
    }
    return topics;
}

} // namespace

Task<ExitStatus> sujets(Context &context, OnDemand<TopicStore> topicStore,
                        OnDemand<Preferences> preferences, OnDemand<ScoreProvenanceLog> provenance,
                        OnDemand<RediscoveryLog> rediscoveries, const Clock &clock) {
    const QString word = context.arguments.options.value(QStringLiteral("statut"));
    const auto status = json::fromRaw<TopicStatus>(word);
    if (!word.isEmpty() && !status) {
        throw Failure(French::tr("Statut inconnu : %1. Choix : pending, inbox, program, "
                                 "reserve, done, dismissed.")
                          .arg(word),
                      ExitStatus::Usage);
    }
    if (!context.arguments.positional.isEmpty()) {
        if (status) {
            throw Failure(French::tr("Donne un identifiant ou un statut, pas les deux."),
                          ExitStatus::Usage);
        }
        openTopic(context, *topicStore, provenance, clock);
        co_return ExitStatus::Done;
    }
    const TopicStore &store = *topicStore;
    if (store.isDamaged()) {
        context.console.say(French::tr("Tes sujets sont illisibles : %1").arg(store.file()));
        co_return ExitStatus::Failed;
    }
    const QList<TopicPtr> topics =
        status ? topicsOf(*status, store, preferences, rediscoveries, clock) : store.topics();
    if (context.arguments.json()) {
        QList<Topic> records;
        for (const TopicPtr &topic : topics) {
            records += *topic;
        }
        context.console.print(json::encode(records, json::Style::Pretty));
    } else if (!topics.isEmpty()) {
        context.console.print(topicLines(context.console, topics));
    } else {
        context.console.say(French::tr("Aucun sujet."));
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
