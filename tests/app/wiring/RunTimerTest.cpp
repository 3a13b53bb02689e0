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

/// What happens to the clock or the machine around the run.
enum class Mishap { None, Asleep, BackAnHour, BackADay, BackDuringTheRun };

/// Days around one change of a zone's clocks, as the app lives through them: it looks when its
/// timer says, a run takes some minutes and leaves its date. Counts, by the day that a run is meant
/// for, how often one began and how often a banner offered it.
class Simulation {
public:
    Simulation(Preferences &preferences, test::FixedClock &clock, const QTimeZone &zone,
               Mishap mishap)
        : m_preferences(preferences), m_clock(clock), m_zone(zone), m_mishap(mishap) {}

    /// From `begin` to `end`; the mishap comes at the run of `day`, due at `slot`.
    void live(const QDateTime &begin, const QDateTime &end, const QDateTime &slot) {
        m_clock.moment = begin;
        m_preferences.change(&Settings::servedSlot, std::nullopt);
        m_preferences.change(&Settings::lastSearch, begin.addSecs(-60));
        RunTimer timer(m_preferences, m_clock, m_zone);
        QObject::connect(&timer, &RunTimer::due, [&] { run(slot); });
        bool slept = false;
        while (m_clock.moment < end) {
            auto step = std::chrono::seconds(std::chrono::ceil<std::chrono::seconds>(timer.wait()));
            const QDateTime next = m_clock.moment.addSecs(step.count());
            const bool overSlot = m_clock.moment < slot && next >= slot;
            m_clock.moment = next;
            if (m_mishap == Mishap::Asleep && overSlot && !slept) {
                slept = true;
                m_clock.moment = slot.addSecs(3 * 3600);
            }
            timer.look();
            offer();
        }
    }

    QMap<QDate, int> runs;
    QMap<QDate, QSet<QDateTime>> banners;

private:
    void run(const QDateTime &slot) {
        ++runs[m_clock.moment.toTimeZone(m_zone).date()];
        const bool touched = m_clock.moment >= slot && !std::exchange(m_touched, true);
        const bool back = touched && m_mishap == Mishap::BackDuringTheRun;
        const QDateTime began = m_clock.moment;
        m_clock.moment = began.addSecs(back ? -3600 : 240);
        done(std::max(began, m_clock.moment));
        if (touched && m_mishap == Mishap::BackAnHour) {
            m_clock.moment = m_clock.moment.addSecs(-3600);
        } else if (touched && m_mishap == Mishap::BackADay) {
            m_clock.moment = m_clock.moment.addDays(-1);
        }
    }
    /// As a run leaves it.
    void done(const QDateTime &ended) {
        const Settings &settings = m_preferences.settings();
        m_preferences.change(&Settings::servedSlot, settings.schedule.slotAt(ended, m_zone));
        m_preferences.change(&Settings::lastSearch, ended);
    }
    /// What the window offers: a run that was missed, until it is made up for.
    void offer() {
        const Settings &settings = m_preferences.settings();
        if (const auto missed =
                settings.schedule.missedRun(settings.lastSearch, m_clock.moment, m_zone,
                                            settings.believedSlot(m_clock.moment))) {
            banners[missed->toTimeZone(m_zone).date()].insert(*missed);
            done(m_clock.moment); // the user takes it up
        }
    }

    Preferences &m_preferences;
    test::FixedClock &m_clock;
    QTimeZone m_zone;
    Mishap m_mishap;
    bool m_touched = false;
};

TEST_F(RunTimerTest, every_scheduled_day_has_one_run_or_one_banner_whatever_the_clocks_do) {
    const struct {
        const char *zone;
        int year;
    } places[] = {
        {"Europe/Paris", 2026}, {"America/Santiago", 2026}, {"America/Havana", 2026},
        {"Asia/Beirut", 2026},  {"America/New_York", 2026}, {"Australia/Lord_Howe", 2026},
        {"Africa/Cairo", 2026}, {"America/St_Johns", 2006}, {"Pacific/Apia", 2011},
        {"Asia/Kolkata", 2026},
    };
    const QTime times[] = {QTime(0, 0), QTime(0, 30), QTime(2, 30), QTime(8, 0), QTime(23, 30)};
    const Mishap mishaps[] = {Mishap::None, Mishap::Asleep, Mishap::BackAnHour, Mishap::BackADay,
                              Mishap::BackDuringTheRun};
    int cases = 0;
    for (const auto &place : places) {
        const QTimeZone zone(place.zone);
        ASSERT_TRUE(zone.isValid()) << place.zone;
        const QDateTime newYear(QDate(place.year, 1, 1), QTime(0, 0), Qt::UTC);
        QList<QDateTime> changes;
        for (const auto &change : zone.transitions(newYear, newYear.addYears(1))) {
            changes += change.atUtc;
        }
        if (changes.isEmpty()) {
            changes += newYear.addDays(100);
        }
        for (const QDateTime &change : std::as_const(changes)) {
            // The day on which the clocks change, or would show midnight.
            const QDate day = change.addSecs(-1).toTimeZone(zone).date().addDays(
                change.addSecs(-1).toTimeZone(zone).time().hour() == 23 ? 1 : 0);
            for (const QTime &time : times) {
                for (const Mishap mishap : mishaps) {
                    ++cases;
                    const Schedule schedule{{day.dayOfWeek() % 7 + 1}, time.hour(), time.minute()};
                    preferences.change(&Settings::schedule, schedule);
                    const QDateTime begin = change.addDays(-3);
                    const auto slot = schedule.nextRun(begin, zone);
                    ASSERT_TRUE(slot);
                    // It shows that time, or comes with the skip.
                    const QTime shown = slot->toTimeZone(zone).time();
                    EXPECT_TRUE(shown == time || *slot == change)
                        << place.zone << ' ' << time.toString().toStdString();
                    Simulation life(preferences, clock, zone, mishap);
                    life.live(begin, change.addDays(4), *slot);
                    int runs = 0;
                    for (const int count : std::as_const(life.runs)) {
                        runs += count;
                    }
                    int banners = 0;
                    for (const auto &offered : std::as_const(life.banners)) {
                        banners += int(offered.size());
                    }
                    EXPECT_EQ(runs, mishap == Mishap::Asleep ? 0 : 1)
                        << place.zone << ' ' << day.toString(Qt::ISODate).toStdString() << ' '
                        << time.toString().toStdString() << " mishap " << int(mishap);
                    EXPECT_EQ(banners, mishap == Mishap::Asleep ? 1 : 0)
                        << place.zone << ' ' << day.toString(Qt::ISODate).toStdString() << ' '
                        << time.toString().toStdString() << " mishap " << int(mishap);
                }
            }
        }
    }
    EXPECT_GT(cases, 400);
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
