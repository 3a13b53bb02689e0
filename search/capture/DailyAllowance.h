#pragma once

#include "base/Async.h"
#include "base/Clock.h"
#include "base/Json.h"
#include "base/LocalZone.h"

#include <QString>

namespace vorle {

/// How many links that other programs handed over are judged by themselves in a day: whoever drops
/// thousands must not spend the user's account. Kept beside the topics, so that a new start gives
/// no new day. Main thread; the clock outlives it.
class DailyAllowance {
public:
    static constexpr int linksADay = 50;

    /// `topicsFile`: "captures.json" lies beside it; empty: nowhere. Reads it. What cannot be read
    /// counts as a day on which nothing was judged.
    DailyAllowance(const QString &topicsFile, const Clock &clock, LocalZone zone = {});

    /// How many are left of the day that it is now.
    int left();
    /// So many were judged. Ends once that is on disk, or could not be written, which is logged.
    Task<> spend(int judged);

private:
    struct Record {
        QString day; ///< "2026-11-22", as the clocks show it here
        int judged = 0;
        json::Rest unknown = {}; ///< keys of a later version

        static constexpr auto jsonFields() {
            return std::tuple(json::field("day", &Record::day),
                              json::field("judged", &Record::judged));
        }
        static constexpr auto jsonRest() { return &Record::unknown; }
    };

    void turnPage();

    QString m_file;
    const Clock &m_clock;
    LocalZone m_zone;
    Record m_record;
};

} // namespace vorle
