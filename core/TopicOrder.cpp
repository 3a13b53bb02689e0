#include "core/TopicOrder.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace vorle {

namespace {

/// Compares like a date, a missing one before every other.
qint64 rank(const std::optional<QDateTime> &date) {
    return date ? date->toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
}

} // namespace

bool triagedLater(const Topic &a, const Topic &b) { return rank(a.triagedAt) > rank(b.triagedAt); }

bool doneLater(const Topic &a, const Topic &b) { return rank(a.doneAt) > rank(b.doneAt); }

bool moreUrgent(const Topic &a, const Topic &b) {
    const bool urgent = a.isUrgent();
    return urgent != b.isUrgent() ? urgent : rank(a.triagedAt) < rank(b.triagedAt);
}

bool soonerInProgram(const Topic &a, const Topic &b) {
    const bool urgent = a.isUrgent();
    if (urgent != b.isUrgent()) {
        return urgent;
    }
    return a.score != b.score ? a.score > b.score : rank(a.triagedAt) < rank(b.triagedAt);
}

QList<TopicPtr> ordered(QList<TopicPtr> topics, bool (*before)(const Topic &, const Topic &)) {
    // Their places settle ties: the library's own stable sort draws a deprecation warning here.
    std::vector<std::pair<TopicPtr, qsizetype>> placed;
    placed.reserve(static_cast<std::size_t>(topics.size()));
    for (TopicPtr &topic : topics) {
        placed.emplace_back(std::move(topic), static_cast<qsizetype>(placed.size()));
    }
    std::ranges::sort(placed, [before](const auto &a, const auto &b) {
        if (before(*a.first, *b.first)) {
            return true;
        }
        return !before(*b.first, *a.first) && a.second < b.second;
    });
    std::ranges::transform(placed, topics.begin(), [](auto &one) { return std::move(one.first); });
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
