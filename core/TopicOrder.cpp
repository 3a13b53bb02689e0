#include "core/TopicOrder.h"

#include <algorithm>
#include <limits>

namespace vorle {

namespace {

/// Compares like a date, a missing one before every other.
qint64 moment(const std::optional<QDateTime> &date) {
    return date ? date->toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

/// The higher, the sooner. What no judge gives, and a file may hold, comes to the ends.
quint32 scorePlace(const Topic &topic) {
    constexpr int middle = 127;
    return static_cast<quint32>(middle -
                                std::clamp(shownScore(topic).value_or(0), -middle, middle));
}

/// Groups within groups, the first before all; the last two are below 256.
quint32 group(bool later, quint32 second, quint32 third) {
    return (later ? 1U << 16 : 0U) | second << 8 | third;
}

} // namespace

TopicRank latestTriagedRank(const Topic &topic) { return {0, ~moment(topic.triagedAt)}; }

TopicRank latestDoneRank(const Topic &topic) { return {0, ~moment(topic.doneAt)}; }

TopicRank urgencyRank(const Topic &topic) {
    return {group(!topic.isUrgent(), 0, 0), moment(topic.triagedAt)};
}

TopicRank programRank(const Topic &topic) {
    return {group(!topic.isUrgent(), 0, scorePlace(topic)), moment(topic.triagedAt)};
}

TopicRank inboxRank(const Topic &topic, Tier tier) {
    return {group(!isBeingRead(topic), static_cast<quint32>(tier), scorePlace(topic)),
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
