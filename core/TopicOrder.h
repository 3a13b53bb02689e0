#pragma once

#include "core/ScoreScale.h"
#include "core/TopicStore.h"

#include <QDateTime>
#include <QList>
#include <QLocale>
#include <QTimeZone>

#include <compare>

namespace vorle {

/// What an order goes by, worked out of one topic: the least comes first. Where many are sorted it
/// is worked out once each, and small, as they are moved about.
struct TopicRank {
    quint32 group = 0; ///< up to 24 bits of it: whoever sorts in sections has the others
    qint64 moment = 0; ///< ms of the epoch, or its complement where the latest comes first

    auto operator<=>(const TopicRank &) const = default;
};

/// Of the orders below, in their order.
TopicRank latestTriagedRank(const Topic &topic);
TopicRank latestDoneRank(const Topic &topic);
TopicRank urgencyRank(const Topic &topic);
TopicRank programRank(const Topic &topic);
TopicRank inboxRank(const Topic &topic, Tier tier);

/// The orders of the sections. Each comparison is a strict weak order for stable sorts, so that
/// topics it holds equal keep the store's order. Pure functions, any thread.

/// Most recent decision first; one never triaged counts as the most distant past.
bool latestTriagedFirst(const Topic &a, const Topic &b);
/// Most recently done first; one without a date counts as the most distant past.
bool latestDoneFirst(const Topic &a, const Topic &b);
/// Urgent topics first; within each group the earliest decision first, a missing one before all.
bool moreUrgent(const Topic &a, const Topic &b);
/// The program's order: urgent topics first, then by the score shown, then as moreUrgent has it.
bool programOrder(const Topic &a, const Topic &b);
/// The inbox's order: links that are being read, then by tier, by the score shown, the newest find
/// first. The tiers are those of the two (see tierOf), worked out once by whoever compares often.
bool inboxOrder(const Topic &a, Tier tierOfA, const Topic &b, Tier tierOfB);

/// The topics in the given order.
QList<TopicPtr> ordered(QList<TopicPtr> topics, bool (*before)(const Topic &, const Topic &));

/// A span of time: from `begin` on, before `end`.
struct Period {
    QDateTime begin;
    QDateTime end;

    bool contains(const QDateTime &moment) const { return begin <= moment && moment < end; }
};

/// The calendar week around `moment`, in the user's zone, from the first day that
/// the system's settings give it: the program speaks French, the user's calendar need not.
Period calendarWeek(const QDateTime &moment, const QLocale &locale = QLocale::system(),
                    const QTimeZone &zone = QTimeZone::systemTimeZone());

/// The topics found inside the period.
QList<TopicPtr> foundWithin(const QList<TopicPtr> &topics, const Period &period);

} // namespace vorle
