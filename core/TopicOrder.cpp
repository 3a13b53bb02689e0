#include "core/TopicOrder.h"

#include <algorithm>
#include <limits>

namespace vorle {

namespace {

/// Compares like a date, a missing one before every other.
qint64 rank(const std::optional<QDateTime> &date) {
    return date ? date->toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

} // namespace

bool latestTriagedFirst(const Topic &a, const Topic &b) {
    return rank(a.triagedAt) > rank(b.triagedAt);
}

bool latestDoneFirst(const Topic &a, const Topic &b) { return rank(a.doneAt) > rank(b.doneAt); }

bool moreUrgent(const Topic &a, const Topic &b) {
    const bool urgent = a.isUrgent();
    return urgent != b.isUrgent() ? urgent : rank(a.triagedAt) < rank(b.triagedAt);
}

bool programOrder(const Topic &a, const Topic &b) {
    const int left = shownScore(a).value_or(0);
    const int right = shownScore(b).value_or(0);
    return a.isUrgent() == b.isUrgent() && left != right ? left > right : moreUrgent(a, b);
}

bool inboxOrder(const Topic &a, Tier tierOfA, const Topic &b, Tier tierOfB) {
    const bool reading = isBeingRead(a);
    if (reading != isBeingRead(b)) {
        return reading;
    }
    if (tierOfA != tierOfB) {
        return tierOfA < tierOfB;
    }
    const int score = shownScore(a).value_or(0);
    const int other = shownScore(b).value_or(0);
    return score != other ? score > other : a.foundAt > b.foundAt;
}

QList<TopicPtr> ordered(QList<TopicPtr> topics, bool (*before)(const Topic &, const Topic &)) {
    const auto sooner = [before](const TopicPtr &a, const TopicPtr &b) { return before(*a, *b); };
    if (!std::ranges::is_sorted(topics, sooner)) { // often it is: lists are kept in their order
        std::ranges::stable_sort(topics, sooner);
    }
    return topics;
}

Period calendarWeek(const QDateTime &moment, const QLocale &locale, const QTimeZone &zone) {
    const QDate day = moment.toTimeZone(zone).date();
    const int sinceFirst = (day.dayOfWeek() - static_cast<int>(locale.firstDayOfWeek()) + 7) % 7;
    const QDate first = day.addDays(-sinceFirst);
    return {first.startOfDay(zone).toUTC(), first.addDays(7).startOfDay(zone).toUTC()};
}

QList<TopicPtr> foundWithin(const QList<TopicPtr> &topics, const Period &period) {
    QList<TopicPtr> found;
    std::ranges::copy_if(topics, std::back_inserter(found),
                         [&](const TopicPtr &topic) { return period.contains(topic->foundAt); });
    return found;
}

} // namespace vorle
