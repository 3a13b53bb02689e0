#include "core/Schedule.h"

#include "base/WallClock.h"

#include <QSet>

#include <algorithm>

namespace vorle {

namespace {

/// Sunday 1 to Saturday 7, from Monday 1 to Sunday 7.
int calendarWeekday(const QDate &date) { return date.dayOfWeek() % 7 + 1; }

QString slotName(const QDate &date, const QTime &time) {
    return QDateTime(date, time, Qt::UTC).toString(QStringLiteral("yyyy-MM-dd'T'HH:mm"));
}

} // namespace

bool Schedule::isValid() const {
    return TimeOfDay{hour, minute}.isValid() &&
           std::ranges::all_of(weekdays, [](int day) { return day >= 1 && day <= 7; });
}

bool Schedule::operator==(const Schedule &other) const {
    const auto asSet = [](const QList<int> &days) { return QSet<int>(days.begin(), days.end()); };
    return hour == other.hour && minute == other.minute && asSet(weekdays) == asSet(other.weekdays);
}

std::optional<QDateTime> Schedule::nextRun(const QDateTime &after, const QTimeZone &zone,
                                           const std::optional<QString> &served) const {
    const QTime time(hour, minute);
    if (!time.isValid() || !after.isValid()) {
        return std::nullopt;
    }
    const QDate today = after.toTimeZone(zone).date();
    // A week on is the same weekday, two when that one was served; one day more covers a due moment
    // shifted by the clocks.
    for (int days = 0; days <= 15; ++days) {
        const QDate date = today.addDays(days);
        if (weekdays.contains(calendarWeekday(date)) && slotName(date, time) != served) {
            QDateTime due = momentOn(date, time, zone);
            if (due > after) {
                return due;
            }
        }
    }
    return std::nullopt;
}

std::optional<QString> Schedule::slotAt(const QDateTime &moment, const QTimeZone &zone) const {
    const QTime time(hour, minute);
    if (!time.isValid() || !moment.isValid()) {
        return std::nullopt;
    }
    const QDate today = moment.toTimeZone(zone).date();
    for (int days = 0; days <= 8; ++days) {
        const QDate date = today.addDays(-days);
        if (weekdays.contains(calendarWeekday(date)) && momentOn(date, time, zone) <= moment) {
            return slotName(date, time);
        }
    }
    return std::nullopt;
}

std::optional<QDateTime> Schedule::missedRun(const std::optional<QDateTime> &lastRun,
                                             const QDateTime &now, const QTimeZone &zone,
                                             const std::optional<QString> &served) const {
    if (!lastRun) {
        return std::nullopt;
    }
    constexpr qint64 oneDay = 86'400;
    const QDateTime due =
        nextRun(*lastRun, zone, served).value_or(lastRun->toUTC().addSecs(oneDay));
    return due <= now ? std::optional(due) : std::nullopt;
}

} // namespace vorle
