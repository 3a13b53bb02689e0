#pragma once

#include "app/cli/Console.h"
#include "core/TopicStore.h"

#include <QDate>
#include <QList>

namespace vorle::cli {

/// The topics as a person reads them in a terminal: by tier, best first, each with its score, gist,
/// reason, first step and link.
QString topicCards(const Console &console, QList<TopicPtr> topics, const QDate &today);

/// One line a topic: score, title, where it stands, identity.
QString topicLines(const Console &console, const QList<TopicPtr> &topics);

} // namespace vorle::cli
