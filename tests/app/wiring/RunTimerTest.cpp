// The scheduled run over clocks that are changed, set and slept through.

#include "app/wiring/RunTimer.h"
#include "tests/core/Samples.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;

class RunTimerTest : public testing::Test {
protected:
    QTemporaryDir folder;
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    test::FixedClock clock;
};

QDateTime november(int day, int hour, int minute, int second = 0) {
    return QDateTime(QDate(2026, 11, day), QTime(hour, minute, second), Qt::UTC);
}

TEST_F(RunTimerTest, starts_the_run_at_its_time_and_never_one_that_was_slept_through) {
    clock.moment = november(8, 23, 0); // Sunday; the run is due on Monday at 8:00
    RunTimer timer(preferences, clock, QTimeZone::utc());
    QSignalSpy due(&timer, &RunTimer::due);
    QSignalSpy looked(&timer, &RunTimer::looked);
    EXPECT_EQ(timer.wait(), RunTimer::maxWait);
    clock.moment = november(9, 7, 59, 58);
    timer.look();
    EXPECT_EQ(due.count(), 0);
    EXPECT_EQ(timer.wait(), 3s);
    clock.moment = november(9, 8, 0, 1);
    timer.look();
    EXPECT_EQ(due.count(), 1);
    EXPECT_EQ(timer.next(), november(16, 8, 0));
    timer.look(); // once a week is enough
    EXPECT_EQ(due.count(), 1);

    clock.moment = november(16, 8, 30); // woken up half an hour late
    timer.look();
    EXPECT_EQ(due.count(), 1);
    EXPECT_EQ(looked.count(), 4);

    preferences.change(&Settings::schedule, Schedule{{3}, 9, 0});
    EXPECT_EQ(timer.next(), november(17, 9, 0));
    preferences.change(&Settings::schedule, Schedule{{}, 9, 0});
    EXPECT_FALSE(timer.next());
    clock.moment = november(17, 9, 0);
    timer.look();
    EXPECT_EQ(due.count(), 1);
}

TEST_F(RunTimerTest, a_moment_that_was_past_when_it_was_chosen_starts_nothing) {
    clock.moment = november(10, 8, 55); // Tuesday
    RunTimer timer(preferences, clock, QTimeZone::utc());
    QSignalSpy due(&timer, &RunTimer::due);
    clock.moment = november(10, 9, 1);
    preferences.change(&Settings::schedule, Schedule{{3}, 9, 0}); // a minute ago
    EXPECT_EQ(timer.next(), november(17, 9, 0));
    clock.moment = november(10, 9, 2);
    timer.look();
    EXPECT_EQ(due.count(), 0);
    preferences.change(&Settings::schedule, Schedule{{3}, 9, 3}); // in a minute
    clock.moment = november(10, 9, 3, 1);
    timer.look();
    EXPECT_EQ(due.count(), 1);
    // Changed after its moment, before the timer looked: the old schedule's run is still due.
    preferences.change(&Settings::schedule, Schedule{{3}, 9, 5});
    clock.moment = november(10, 9, 5, 10);
    preferences.change(&Settings::schedule, Schedule{{3, 4}, 9, 5});
    EXPECT_EQ(due.count(), 2);
}

TEST_F(RunTimerTest, a_zone_that_changes_under_way_brings_neither_a_second_run_nor_a_wrong_hour) {
    QTimeZone zone("Europe/Paris");
    clock.moment = november(9, 6, 55); // 7:55 in Paris
    RunTimer timer(preferences, clock, LocalZone([&] { return zone; }));
    QSignalSpy due(&timer, &RunTimer::due);
    EXPECT_EQ(timer.next(), november(9, 7, 0));
    zone = QTimeZone("Europe/London"); // 6:55 there
    clock.moment = november(9, 7, 0, 1);
    timer.look();
    EXPECT_EQ(due.count(), 0);
    EXPECT_EQ(timer.next(), november(9, 8, 0));
    clock.moment = november(9, 8, 0, 1);
    timer.look();
    EXPECT_EQ(due.count(), 1);
    zone = QTimeZone("America/New_York"); // 3:00 of the same Monday, which had its run
    clock.moment = november(9, 13, 0, 1);
    timer.look();
    EXPECT_EQ(due.count(), 1);
    EXPECT_EQ(timer.next(), november(16, 13, 0));
    // So it is after a restart: the run left word of the slot it served.
    preferences.change(&Settings::lastSearch, november(9, 8, 5));
    preferences.change(&Settings::servedSlot, QStringLiteral("2026-11-09T08:00"));
    clock.moment = november(9, 12, 0);
    EXPECT_EQ(RunTimer(preferences, clock, zone).next(), november(16, 13, 0));
    // Another moment of the same day, chosen by hand, is another run.
    preferences.change(&Settings::schedule, Schedule{{2}, 15, 0});
    EXPECT_EQ(timer.next(), november(9, 20, 0));
}

TEST_F(RunTimerTest, a_run_that_a_wrong_clock_dated_years_ahead_does_not_stop_all_others) {
    preferences.change(&Settings::lastSearch, november(9, 8, 0).addYears(3));
    clock.moment = november(8, 23, 0);
    const RunTimer timer(preferences, clock, QTimeZone::utc());
    EXPECT_EQ(timer.next(), november(9, 8, 0));
    // Nor does the slot that such a run took itself to serve.
    preferences.change(&Settings::servedSlot, QStringLiteral("2026-11-09T08:00"));
    preferences.change(&Settings::lastSearch, november(17, 12, 0));
    EXPECT_EQ(timer.next(), november(9, 8, 0));
}

TEST_F(RunTimerTest, of_an_hour_shown_twice_the_first_counts_and_a_skipped_one_keeps_its_place) {
    struct Case {
        const char *zone;
        QDate day;
        QTime time;
        QDateTime due;
    };
    const auto utc = [](int year, int month, int day, int hour, int minute) {
        return QDateTime(QDate(year, month, day), QTime(hour, minute), Qt::UTC);
    };
    const std::initializer_list<Case> cases{
        {"Europe/Paris", {2026, 10, 25}, {2, 30}, utc(2026, 10, 25, 0, 30)},
        {"Europe/Paris", {2026, 3, 29}, {2, 30}, utc(2026, 3, 29, 1, 0)},
        {"America/Santiago", {2026, 9, 6}, {0, 0}, utc(2026, 9, 6, 4, 0)},
        {"America/Santiago", {2026, 9, 6}, {0, 30}, utc(2026, 9, 6, 4, 0)},
        {"America/Santiago", {2026, 4, 4}, {23, 30}, utc(2026, 4, 5, 2, 30)},
        {"America/Havana", {2026, 3, 8}, {0, 15}, utc(2026, 3, 8, 5, 0)},
        {"America/Havana", {2026, 11, 1}, {0, 15}, utc(2026, 11, 1, 4, 15)},
        {"Asia/Beirut", {2026, 3, 29}, {0, 0}, utc(2026, 3, 28, 22, 0)},
        {"Australia/Lord_Howe", {2026, 10, 4}, {2, 15}, utc(2026, 10, 3, 15, 30)},
        // A day that the islands never had.
        {"Pacific/Apia", {2011, 12, 30}, {8, 0}, utc(2011, 12, 30, 10, 0)},
    };
    for (const Case &each : cases) {
        const Schedule schedule{
            {each.day.dayOfWeek() % 7 + 1}, each.time.hour(), each.time.minute()};
        const QTimeZone zone(each.zone);
        EXPECT_EQ(schedule.nextRun(each.due.addDays(-3), zone), each.due)
            << each.zone << ' ' << each.time.toString().toStdString();
        const auto next = schedule.nextRun(each.due, zone); // a week on, not an hour
        ASSERT_TRUE(next);
        EXPECT_GT(*next, each.due.addDays(6)) << each.zone;
    }
}

} // namespace
} // namespace vorle
