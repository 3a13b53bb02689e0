// The rest of a run over clocks that pass, are slept through and meet the schedule.

#include "app/wiring/ResumeTimer.h"
#include "tests/core/Samples.h"
#include "tests/search/run/RunParts.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;

class ResumeTimerTest : public testing::Test {
protected:
    ResumeTimerTest() { clock.moment = at(11, 0); }

    static QDateTime at(int hour, int minute) { // on a Sunday
        return QDateTime(QDate(2026, 11, 22), QTime(hour, minute), Qt::UTC);
    }
    /// What a run left that waits until then.
    void leave(const std::optional<QDateTime> &until) {
        RunRemainder rest;
        rest.report.date = at(10, 0);
        rest.report.waits = RunWaits{at(10, 0), until, QStringLiteral("Codex"), {}, 1, 0, at(8, 0)};
        rest.scopes = {RemainingScope{QStringLiteral("Tes sujets"), Origin::List, {}, {}}};
        ASSERT_TRUE(RemainderFile(parts.store.file()).write(rest, clock.now()));
    }
    void look() {
        runs.look();
        QCoreApplication::processEvents();
    }

    test::FixedClock clock;
    test::RunParts parts{clock, QTimeZone::utc()};
    RunTimer runs{parts.preferences, clock, QTimeZone::utc()};
};

TEST_F(ResumeTimerTest, goes_on_just_after_the_hour_and_looks_seldom_until_then) {
    leave(at(13, 0));
    ResumeTimer timer(parts.engine, runs, clock);
    QSignalSpy due(&timer, &ResumeTimer::due);
    QCoreApplication::processEvents();
    EXPECT_EQ(timer.wait(), std::nullopt) << "the schedule's looks are enough";
    clock.moment = at(12, 55);
    look();
    EXPECT_EQ(timer.wait(), 6min);
    EXPECT_EQ(due.count(), 0);
    clock.moment = at(13, 1);
    look();
    EXPECT_EQ(due.count(), 1);
    clock.moment = at(13, 1).addSecs(12 * 3600); // it was asleep: the user is asked
    look();
    EXPECT_EQ(due.count(), 1);
    EXPECT_EQ(timer.wait(), std::nullopt);
}

TEST_F(ResumeTimerTest, goes_on_at_the_next_start_and_never_where_the_hour_is_unknown) {
    leave(at(10, 30));
    {
        ResumeTimer timer(parts.engine, runs, clock);
        QSignalSpy due(&timer, &ResumeTimer::due);
        QCoreApplication::processEvents();
        EXPECT_EQ(due.count(), 1);
    }
    leave(std::nullopt);
    SearchEngine next({.preferences = parts.preferences,
                       .store = parts.store,
                       .provenance = parts.provenance,
                       .rediscoveries = parts.rediscoveries,
                       .asker = parts.asker,
                       .reader = parts.reader,
                       .feeds = parts.feeds,
                       .images = parts.images,
                       .clock = clock});
    ResumeTimer timer(next, runs, clock);
    QSignalSpy due(&timer, &ResumeTimer::due);
    clock.moment = at(23, 0);
    look();
    EXPECT_TRUE(next.remainder());
    EXPECT_EQ(due.count(), 0);
}

TEST_F(ResumeTimerTest, lets_a_scheduled_run_of_the_same_look_go_first) {
    leave(at(13, 0));
    parts.preferences.change(&Settings::schedule, Schedule{{1}, 13, 0});
    ResumeTimer timer(parts.engine, runs, clock);
    QCoreApplication::processEvents();
    QStringList order;
    QObject::connect(&runs, &RunTimer::due, [&] { order += QStringLiteral("schedule"); });
    QObject::connect(&timer, &ResumeTimer::due, [&] { order += QStringLiteral("rest"); });
    clock.moment = at(13, 1);
    look();
    EXPECT_EQ(order, (QStringList{QStringLiteral("schedule"), QStringLiteral("rest")}));
}

} // namespace
} // namespace vorle
