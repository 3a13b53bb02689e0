#pragma once

#include "base/Json.h"

#include <QDateTime>
#include <QList>
#include <QTimeZone>

#include <optional>

namespace vorle {

/// When the weekly search run happens: days counted 1 (Sunday) to 7 (Saturday), 0-23 and 0-59.
struct Schedule {
    QList<int> weekdays{2};
    int hour = 8;
    int minute = 0;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("weekdays", &Schedule::weekdays),
                          json::field("hour", &Schedule::hour),
                          json::field("minute", &Schedule::minute));
    }
    /// Whether every number is in its range. No day at all is valid: no run happens by itself.
    bool isValid() const;

    /// The first moment strictly after `after` at which a run is due, in UTC; nothing without a
    /// day. An hour that the clocks skip is due as soon as they have. `served` is the slot that had
    /// its run (see slotAt): further west its hour comes once more, and is passed over.
    std::optional<QDateTime> nextRun(const QDateTime &after,
                                     const QTimeZone &zone = QTimeZone::systemTimeZone(),
                                     const std::optional<QString> &served = {}) const;

    /// The slot that a run at `moment` serves: the last one due by then, as the calendar and the
    /// clocks of its place name it, "2026-11-09T08:00"; nothing without a day.
    std::optional<QString> slotAt(const QDateTime &moment, const QTimeZone &zone) const;

    /// The moment of the run that should have happened between the last completed one and `now`,
    /// or nothing. Without any day one is due a day after the last. Before a first completed run
    /// nothing is missed. `served` as for nextRun().
    std::optional<QDateTime> missedRun(const std::optional<QDateTime> &lastRun,
                                       const QDateTime &now,
                                       const QTimeZone &zone = QTimeZone::systemTimeZone(),
                                       const std::optional<QString> &served = {}) const;

    /// The days are a set: neither order nor repetition counts.
    bool operator==(const Schedule &other) const;
};

/// A time of day: when the reminder is sent.
struct TimeOfDay {
    int hour = 17;
    int minute = 0;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("hour", &TimeOfDay::hour),
                          json::field("minute", &TimeOfDay::minute));
    }
    bool isValid() const { return hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59; }
    bool operator==(const TimeOfDay &) const = default;
};

} // namespace vorle
