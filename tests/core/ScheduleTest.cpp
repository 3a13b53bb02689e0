#include "core/Schedule.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

const QTimeZone paris("Europe/Paris");

QDateTime at(int year, int month, int day, int hour, int minute) {
    return QDateTime(QDate(year, month, day), QTime(hour, minute), paris);
}

TEST(Schedule, finds_the_next_run_strictly_after) {
    const Schedule mondays;
    EXPECT_EQ(mondays.nextRun(at(2026, 11, 2, 8, 0), paris), at(2026, 11, 9, 8, 0));
    EXPECT_EQ(mondays.nextRun(at(2026, 11, 2, 7, 59), paris), at(2026, 11, 2, 8, 0));
    EXPECT_EQ(mondays.nextRun(at(2026, 11, 3, 0, 0), paris), at(2026, 11, 9, 8, 0));
    const Schedule several{{7, 1, 4, 4}, 8, 0}; // Saturday, Sunday, Wednesday
    EXPECT_EQ(several.nextRun(at(2026, 11, 2, 8, 0), paris), at(2026, 11, 4, 8, 0));
    EXPECT_EQ(several.nextRun(at(2026, 11, 7, 8, 0), paris), at(2026, 11, 8, 8, 0));
    EXPECT_EQ((Schedule{{}, 8, 0}).nextRun(at(2026, 11, 2, 8, 0), paris), std::nullopt);
    EXPECT_EQ((Schedule{{0, 8}, 8, 0}).nextRun(at(2026, 11, 2, 8, 0), paris), std::nullopt);
}

TEST(Schedule, keeps_the_wall_clock_through_changes_of_the_clocks) {
    const Schedule sundays{{1}, 2, 30};
    // Forward on 29 March 2026: 2:30 does not exist, 3:00 comes right after 1:59.
    EXPECT_EQ(sundays.nextRun(at(2026, 3, 28, 12, 0), paris), at(2026, 3, 29, 3, 0));
    EXPECT_EQ(sundays.nextRun(at(2026, 3, 29, 3, 0), paris), at(2026, 4, 5, 2, 30));
    // Back on 25 October 2026.
    const auto autumn = sundays.nextRun(at(2026, 10, 24, 12, 0), paris);
    ASSERT_TRUE(autumn);
    EXPECT_EQ(autumn->toTimeZone(paris).time(), QTime(2, 30));
    EXPECT_EQ(Schedule().nextRun(at(2026, 10, 19, 8, 0), paris), at(2026, 10, 26, 8, 0));
}

TEST(Schedule, tells_a_missed_run) {
    const Schedule mondays;
    const auto last = at(2026, 11, 2, 8, 5);
    EXPECT_EQ(mondays.missedRun(last, at(2026, 11, 9, 8, 1), paris), at(2026, 11, 9, 8, 0));
    EXPECT_EQ(mondays.missedRun(last, at(2026, 11, 9, 8, 0), paris), at(2026, 11, 9, 8, 0));
    EXPECT_EQ(mondays.missedRun(last, at(2026, 11, 8, 22, 0), paris), std::nullopt);
    EXPECT_EQ(mondays.missedRun(std::nullopt, at(2026, 11, 9, 8, 1), paris), std::nullopt);
    const Schedule never{{}, 8, 0};
    EXPECT_EQ(never.missedRun(last, at(2026, 11, 3, 8, 4), paris), std::nullopt);
    EXPECT_EQ(never.missedRun(last, at(2026, 11, 3, 8, 5), paris), at(2026, 11, 3, 8, 5));
}

// Further west the same Monday has its 8:00 once more: the run it is for was made.
TEST(Schedule, a_slot_that_was_served_is_neither_due_nor_missed_in_another_zone) {
    const Schedule mondays;
    const QTimeZone newYork("America/New_York");
    const QDateTime last = at(2026, 11, 9, 8, 5); // 2:05 in New York
    const auto served = mondays.slotAt(last, paris);
    EXPECT_EQ(served, QStringLiteral("2026-11-09T08:00"));
    const QDateTime noon(QDate(2026, 11, 9), QTime(12, 0), newYork);
    EXPECT_TRUE(mondays.missedRun(last, noon, newYork));
    EXPECT_EQ(mondays.missedRun(last, noon, newYork, served), std::nullopt);
    const QDateTime next(QDate(2026, 11, 16), QTime(8, 0), newYork);
    EXPECT_EQ(mondays.nextRun(last, newYork, served), next);
    EXPECT_EQ(mondays.missedRun(last, next, newYork, served), next);
    // A run made by hand before the hour serves the week before, and leaves this one due.
    const QDateTime early = at(2026, 11, 9, 7, 0);
    EXPECT_EQ(mondays.slotAt(early, paris), QStringLiteral("2026-11-02T08:00"));
    EXPECT_EQ(mondays.missedRun(early, noon, paris, mondays.slotAt(early, paris)),
              at(2026, 11, 9, 8, 0));
    EXPECT_EQ((Schedule{{}, 8, 0}).slotAt(last, paris), std::nullopt);
}

TEST(Schedule, compares_its_days_as_a_set) {
    EXPECT_EQ((Schedule{{2, 4}, 8, 0}), (Schedule{{4, 2, 2}, 8, 0}));
    EXPECT_NE((Schedule{{2, 4}, 8, 0}), (Schedule{{2}, 8, 0}));
    EXPECT_FALSE((Schedule{{2, 9}, 8, 0}).isValid());
    EXPECT_FALSE((Schedule{{2}, 24, 0}).isValid());
}

} // namespace
} // namespace vorle
