#include "app/report/WatchFigures.h"
#include "core/Corrections.h"
#include "tests/core/Samples.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <numeric>

namespace vorle {
namespace {

using test::text;

const QTimeZone zone("Europe/Paris");
const QLocale locale(QLocale::French, QLocale::France);

/// Of 2026, in Paris.
QDateTime at(int month, int day, int hour = 12, int minute = 0) {
    return {QDate(2026, month, day), QTime(hour, minute), zone};
}

const QDateTime now = at(11, 18, 10); // a Wednesday

QStringList shape(const ReportPeriod &period) {
    QStringList days;
    for (const Period &part : period.parts) {
        days += part.begin.toTimeZone(zone).toString(QStringLiteral("d/M HH:mm"));
    }
    return days + QStringList{period.whole.end.toTimeZone(zone).toString(QStringLiteral("d/M"))};
}

TEST(ReportPeriod, begins_and_ends_where_a_person_has_it) {
    const ReportPeriod week = reportPeriod(PeriodKind::Week, now, 0, locale, zone);
    EXPECT_EQ(week.parts.size(), 7);
    EXPECT_EQ(shape(week).first(), QStringLiteral("16/11 00:00"));
    EXPECT_EQ(rangeText(week, now, zone), text("16 – 18\u00A0nov."));
    EXPECT_EQ(partLabel(week, 2, zone), text("mer.\u00A018"));

    const ReportPeriod month = reportPeriod(PeriodKind::Month, now, 0, locale, zone);
    EXPECT_EQ(shape(month), (QStringList{QStringLiteral("26/10 00:00"),
                                         QStringLiteral("2/11 00:00"), QStringLiteral("9/11 00:00"),
                                         QStringLiteral("16/11 00:00"), QStringLiteral("23/11")}));
    const ReportPeriod before = reportPeriod(PeriodKind::Month, now, 1, locale, zone);
    EXPECT_EQ(before.whole.end, month.whole.begin);
    // The clocks go back in its last week: midnight stays midnight, and no hour is lost or doubled.
    EXPECT_EQ(shape(before).last(), QStringLiteral("26/10"));
    EXPECT_EQ(before.parts.last().begin.secsTo(before.parts.last().end), (7 * 24 + 1) * 3600);
    EXPECT_EQ(periodTitle(before, now), text("Quatre semaines"));

    const ReportPeriod year = reportPeriod(PeriodKind::Year, now, 0, locale, zone);
    EXPECT_EQ(year.parts.size(), 12);
    EXPECT_EQ(year.whole.begin, QDate(2025, 12, 1).startOfDay(zone));
    EXPECT_EQ(rangeText(year, now, zone), text("1er\u00A0déc.\u00A02025 – 18\u00A0nov."));
    EXPECT_EQ(reportPeriod(PeriodKind::Year, now, 1, locale, zone).whole.end, year.whole.begin);
    for (const ReportPeriod &period : {week, month, before, year}) {
        for (qsizetype i = 1; i < period.parts.size(); ++i) {
            EXPECT_EQ(period.parts[i].begin, period.parts[i - 1].end);
        }
    }
    // Where the week begins on Sunday.
    EXPECT_EQ(shape(reportPeriod(PeriodKind::Week, now, 0, QLocale(QStringLiteral("en_US")), zone))
                  .first(),
              QStringLiteral("15/11 00:00"));
}

class WatchFiguresTest : public testing::Test {
protected:
    Topic &add(const QDateTime &found, TopicStatus status, int score = 7,
               Origin origin = Origin::List) {
        Topic topic = test::sampleTopic(QString::number(topics.size()), status);
        topic.foundAt = found;
        topic.score = score;
        topic.origin = origin;
        topic.readLevel = ReadLevel::Full;
        topics += topic;
        return topics.last();
    }
    WatchFigures figures(PeriodKind kind, int back = 0) const {
        WatchRecords all = records;
        for (const Topic &topic : topics) {
            all.topics += std::make_shared<const Topic>(topic);
        }
        return watchFigures(all, reportPeriod(kind, now, back, locale, zone), now, locale, zone);
    }

    QList<Topic> topics;
    WatchRecords records{.topics = {}, .reports = {}, .weeklyMinutes = 60};
};

TEST_F(WatchFiguresTest, count_what_was_found_by_what_it_is_and_what_was_done_by_its_day) {
    add(at(11, 16, 0, 0), TopicStatus::Inbox);       // the first moment of the week
    add(at(11, 15, 23, 59), TopicStatus::Dismissed); // the last one of the week before
    add(at(11, 17), TopicStatus::Program);
    add(at(11, 17), TopicStatus::Reserve);
    add(at(11, 17), TopicStatus::Pending);           // a run has it still
    Topic &early = add(at(9, 1), TopicStatus::Done); // found long before, done this week
    early.doneAt = at(11, 18, 9);
    early.minutes = 50;
    early.worth = Worth::Gem;
    Topic &wild = add(at(11, 10), TopicStatus::Done);
    wild.doneAt = at(11, 11);
    wild.minutes = 9'999'999;
    Topic &undated = add(at(11, 10), TopicStatus::Done);
    undated.doneAt.reset();

    const WatchFigures week = figures(PeriodKind::Week);
    EXPECT_EQ(week.found.found, 3);
    EXPECT_EQ(week.found.kept, 1);
    EXPECT_EQ(week.found.later, 1);
    EXPECT_EQ(week.found.waiting(), 1);
    EXPECT_EQ(week.done, 1);
    EXPECT_EQ(week.minutes, 50);
    EXPECT_EQ(week.gems, 1);
    EXPECT_EQ(week.minutesLeft, 10);
    EXPECT_EQ(week.weeks, 1);
    EXPECT_EQ(week.weeksHeld, 0);
    EXPECT_TRUE(week.present);
    EXPECT_EQ(week.parts[1].found, 2);
    EXPECT_EQ(week.parts[2].done, 1);

    const WatchFigures month = figures(PeriodKind::Month);
    EXPECT_EQ(month.found.found, 6);
    EXPECT_EQ(month.found.kept, 3);
    EXPECT_EQ(month.minutes, 50 + 10'080); // a topic counts for a week at most
    EXPECT_EQ(month.weeks, 4);
    EXPECT_EQ(month.weeksHeld, 1);
    EXPECT_FALSE(figures(PeriodKind::Month, 1).present);
    // The year's weeks are those since the watch began: 1 September lies in the first of twelve.
    EXPECT_EQ(figures(PeriodKind::Year).weeks, 12);
    EXPECT_EQ(figures(PeriodKind::Year, 1).weeks, 0);
}

TEST_F(WatchFiguresTest, tell_where_topics_came_from_and_how_scores_went) {
    for (int i = 0; i < 4; ++i) {
        add(at(11, 16), i < 3 ? TopicStatus::Program : TopicStatus::Dismissed, 9, Origin::Surface);
    }
    add(at(11, 16), TopicStatus::Done, 3, Origin::Capture);
    for (const char *project : {"P1", "P2", "P3", "P4", "P5", "P6"}) {
        add(at(11, 16), TopicStatus::Dismissed, 5, Origin::Stack).project =
            QString::fromLatin1(project);
    }
    add(at(11, 16), TopicStatus::Inbox, 5, Origin::Suggestion).project = QStringLiteral("P1");
    Topic &unread = add(at(11, 16), TopicStatus::Program, 0, Origin::List);
    unread.readLevel = ReadLevel::None;
    Topic &mine = add(at(11, 16), TopicStatus::Program, 4, Origin::List);
    mine.correction = Correction{9, {correctionReasons().last()}, {}, at(11, 17)};
    Topic &old = add(at(9, 1), TopicStatus::Dismissed, 9, Origin::List);
    old.correction = Correction{6,
                                {correctionReasons().last(), correctionReasons().first()},
                                {},
                                at(11, 17)}; // corrected this week, found long ago

    const WatchFigures all = figures(PeriodKind::Week);
    ASSERT_EQ(all.sources.size(), 6);
    EXPECT_EQ(all.sources[0].from, WatchFigures::From::Sites); // 3 of 4
    EXPECT_EQ(all.sources[1].from,
              WatchFigures::From::Topics); // 2 of 3, a second search among them
    EXPECT_EQ(all.sources[1].found, 3);
    EXPECT_EQ(all.sources[4].from, WatchFigures::From::Others);
    EXPECT_EQ(all.sources[5].from, WatchFigures::From::Captures);
    EXPECT_EQ(std::accumulate(all.sources.begin(), all.sources.end(), 0,
                              [](int sum, const auto &source) { return sum + source.found; }),
              all.found.found);
    QList<int> scores;
    for (const auto &score : all.scores) {
        scores += score.score;
    }
    EXPECT_EQ(scores, (QList<int>{3, 4, 5, 9})); // the app's own, without the unread one
    EXPECT_EQ(all.changed.up, 1);
    EXPECT_EQ(all.changed.down, 1);
    EXPECT_EQ(all.changed.gap, 4);
    EXPECT_EQ(all.changed.reason, correctionReasons().last());

    records.reflexesOf = [&](const QUuid &id) -> std::optional<qsizetype> {
        return id == topics[0].id   ? std::optional<qsizetype>(2)
               : id == topics[3].id ? std::optional<qsizetype>(0)
                                    : std::nullopt;
    };
    const WatchFigures judged = figures(PeriodKind::Week);
    EXPECT_EQ(judged.withReflexes, (WatchFigures::Agreement{1, 1}));
    EXPECT_EQ(judged.withoutReflexes, (WatchFigures::Agreement{0, 1}));
}

TEST_F(WatchFiguresTest, add_up_what_the_runs_took) {
    RunReport run;
    run.date = at(11, 16, 8);
    run.added = 12;
    run.seconds = 90;
    run.costUSD = 0.25;
    run.steps =
        QList<StepReport>{{RunStep::Judge, 3, 1, 40, 0.2}, {RunStep::Candidates, 2, 0, 20, 0.05}};
    RunReport stopped = run;
    stopped.date = at(11, 17);
    stopped.cancelled = true;
    RunReport refused; // nothing was asked
    refused.date = at(11, 18, 8);
    refused.failed = QStringLiteral("pas d’IA");
    RunReport before = run;
    before.date = at(11, 15);
    records.reports = {stopped, run, refused, before};
    const WatchFigures all = figures(PeriodKind::Week);
    ASSERT_EQ(all.runs.size(), 2);
    EXPECT_EQ(all.runs.first().date, run.date);
    EXPECT_EQ(all.calls(), 10);
    EXPECT_EQ(all.costUSD(), 0.5);
    EXPECT_EQ(all.stoppedRuns, 1);
    EXPECT_EQ(all.failedRuns, 0);
    ASSERT_EQ(all.steps.size(), 2);
    EXPECT_EQ(all.steps[0].step, RunStep::Candidates);
    EXPECT_EQ(all.steps[1].calls, 6);
}

} // namespace
} // namespace vorle
