#pragma once

#include "app/cli/Command.h"
#include "app/console/Console.h"
#include "app/labels/ScoreExplanation.h"
#include "core/TopicStore.h"

#include <QDate>
#include <QList>

namespace vorle::cli {

/// Topics as a person reads them in a terminal, under the headings and in the order of "À trier":
/// each with its score, gist, reason, first step and link.
QString topicCards(const Console &console, const QList<TopicPtr> &topics, const TopicStore &store,
                   const QDate &today);

enum class CardScore { Shown, Hidden };

/// One topic of those.
QString topicCard(const Console &console, const Topic &topic, const QDate &today, CardScore score);

/// The week's program: two lines a topic, its score and title, then its time and urgency.
QString programLines(const Console &console, const QList<TopicPtr> &topics, const QDate &today);

/// What a score is made of: the four grades as bars, then a line a fact.
QString openScoreLines(const Console &console, const ScoreExplanation &open);

/// One line a topic: score, title, where it stands, identity.
QString topicLines(const Console &console, const QList<TopicPtr> &topics);

/// Shows the topic that was changed as it is once it is on the disk, or `said` about it.
/// @throws as onceSaved()
Task<> showChanged(Context &context, TopicStore &store, QUuid id, QString said);

} // namespace vorle::cli
