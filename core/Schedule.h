#pragma once

#include "base/Json.h"

#include <QList>

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
    /// The days are a set: their order does not count.
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
    bool operator==(const TimeOfDay &) const = default;
};

} // namespace vorle
