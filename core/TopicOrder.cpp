#include "core/TopicOrder.h"

#include <algorithm>
#include <limits>

namespace vorle {

namespace {

/// Compares like a date, a missing one before every other.
qint64 moment(const std::optional<QDateTime> &date) {
    return date ? date->toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

qint8 flag(bool set) { return set ? 1 : 0; }

/// The higher, the sooner. What no judge gives, and a file may hold, comes to the ends.
qint8 descendingScore(const Topic &topic) {
    constexpr int most = std::numeric_limits<qint8>::max();
    return static_cast<qint8>(-std::clamp(shownScore(topic).value_or(0), -most, most));
}

} // namespace

TopicRank latestTriagedRank(const Topic &topic) { return {{}, ~moment(topic.triagedAt)}; }

TopicRank latestDoneRank(const Topic &topic) { return {{}, ~moment(topic.doneAt)}; }

TopicRank urgencyRank(const Topic &topic) {
    return {{flag(!topic.isUrgent())}, moment(topic.triagedAt)};
}

TopicRank programRank(const Topic &topic) {
    return {{flag(!topic.isUrgent()), descendingScore(topic)}, moment(topic.triagedAt)};
}

TopicRank inboxRank(const Topic &topic, Tier tier) {
    return {{flag(!isBeingRead(topic)), static_cast<qint8>(tier), descendingScore(topic)},
            ~topic.foundAt.toMSecsSinceEpoch()};
}

bool latestTriagedFirst(const Topic &a, const Topic &b) {
    return latestTriagedRank(a) < latestTriagedRank(b);
}

bool latestDoneFirst(const Topic &a, const Topic &b) {
    return latestDoneRank(a) < latestDoneRank(b);
}

bool moreUrgent(const Topic &a, const Topic &b) { return urgencyRank(a) < urgencyRank(b); }

bool programOrder(const Topic &a, const Topic &b) { return programRank(a) < programRank(b); }

bool inboxOrder(const Topic &a, Tier tierOfA, const Topic &b, Tier tierOfB) {
    return inboxRank(a, tierOfA) < inboxRank(b, tierOfB);
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
