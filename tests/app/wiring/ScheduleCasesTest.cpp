// The schedule through changing clocks, mishaps and journeys: every slot has one run or one banner.

#include "app/wiring/RunTimer.h"
#include "tests/core/Samples.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

/// What happens to the clock or the machine around the run of one slot.
enum class Mishap { None, Asleep, BackAnHour, BackADay, BackDuringTheRun };

/// Where one is, from that moment on.
using Journey = QMap<QDateTime, QTimeZone>;

/// Days as the app lives through them: it looks when its timer says, a run takes some minutes and
/// leaves its date, a banner is taken up at once. Counts by slot, as its day and time, how often a
/// run began and how often a banner offered it.
class Simulation {
public:
    Simulation(Preferences &preferences, test::FixedClock &clock, Journey journey, Mishap mishap)
        : m_preferences(preferences)
        , m_clock(clock)
        , m_journey(std::move(journey))
        , m_mishap(mishap) {}

    /// From `begin` to `end`; the mishap comes at the run due at `slot`.
    void live(const QDateTime &begin, const QDateTime &end, const QDateTime &slot) {
        m_clock.moment = begin;
        m_preferences.change(&Settings::servedSlot, std::nullopt);
        m_preferences.change(&Settings::lastSearch, begin.addSecs(-60));
        RunTimer timer(m_preferences, m_clock, LocalZone([this] { return zone(); }));
        QObject::connect(&timer, &RunTimer::due, [&] { run(slot); });
        bool slept = false;
        while (m_clock.moment < end) {
            const auto step = std::chrono::ceil<std::chrono::seconds>(timer.wait());
            const QDateTime next = m_clock.moment.addSecs(step.count());
            const bool overSlot = m_clock.moment < slot && next >= slot;
            m_clock.moment = next;
            if (m_mishap == Mishap::Asleep && overSlot && !std::exchange(slept, true)) {
                m_clock.moment = slot.addSecs(3 * 3600);
            }
            timer.look();
            offer();
        }
    }

    QMap<QString, int> runs;
    QMap<QString, int> banners;

    int served(const QString &slot) const { return runs.value(slot) + banners.value(slot); }

private:
    QTimeZone zone() const {
        auto next = m_journey.upperBound(m_clock.moment);
        return next == m_journey.begin() ? next.value() : std::prev(next).value();
    }
    QString slotAt(const QDateTime &moment) const {
        return m_preferences.settings().schedule.slotAt(moment, zone()).value_or(QString());
    }
    void run(const QDateTime &slot) {
        ++runs[slotAt(m_clock.moment)];
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
        m_preferences.change(&Settings::servedSlot, settings.schedule.slotAt(ended, zone()));
        m_preferences.change(&Settings::lastSearch, ended);
    }
    /// What the window offers: a run that was missed, until it is made up for.
    void offer() {
        const Settings &settings = m_preferences.settings();
        if (const auto missed =
                settings.schedule.missedRun(settings.lastSearch, m_clock.moment, zone(),
                                            settings.believedSlot(m_clock.moment))) {
            ++banners[slotAt(*missed)];
            done(m_clock.moment); // the user takes it up
        }
    }

    Preferences &m_preferences;
    test::FixedClock &m_clock;
    Journey m_journey;
    Mishap m_mishap;
    bool m_touched = false;
};

struct Place {
    const char *zone;
    int year;
    bool closely = false; // with several days a week, too
};

enum class Days { TheDay, ItAndTheNext, All };

class ScheduleCasesTest : public testing::Test {
protected:
    QTemporaryDir folder;
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    test::FixedClock clock;

    /// The days of these weekdays whose slot falls between the two moments, as slots.
    QStringList slotsBetween(const QDateTime &begin, const QDateTime &end, const QTimeZone &zone) {
        QStringList slots;
        const Schedule &schedule = preferences.settings().schedule;
        for (auto due = schedule.nextRun(begin, zone); due && *due < end;
             due = schedule.nextRun(*due, zone)) {
            slots += *schedule.slotAt(*due, zone);
        }
        return slots;
    }
    void live(const Place &place, const QDateTime &change, const QTime &time, Days days,
              Mishap mishap);
};

/// Sunday 1 to Saturday 7.
int weekdayOf(const QDate &day) { return day.dayOfWeek() % 7 + 1; }

/// The day on which the clocks change, or would show midnight.
QDate dayOf(const QDateTime &change, const QTimeZone &zone) {
    const QDateTime before = change.addSecs(-1).toTimeZone(zone);
    return before.date().addDays(before.time().hour() == 23 ? 1 : 0);
}

/// The moments of that year at which the clocks change; any moment where they never do.
QList<QDateTime> changesIn(const QTimeZone &zone, int year) {
    const QDateTime newYear(QDate(year, 1, 1), QTime(0, 0), Qt::UTC);
    QList<QDateTime> changes;
    for (const auto &change : zone.transitions(newYear, newYear.addYears(1))) {
        changes += change.atUtc;
    }
    return changes.isEmpty() ? QList{newYear.addDays(100)} : changes;
}

/// Whether a time is worth a look: every hour on one day a week, where people live; elsewhere, and
/// on several days, those at which something happens.
bool isLookedAt(const Place &place, const QTime &time, Days days) {
    if (place.closely && days == Days::TheDay) {
        return true;
    }
    const bool tells = time == QTime(2, 30) || time == QTime(8, 0) ||
                       (time == QTime(0, 0) && days == Days::TheDay);
    return tells && (days == Days::TheDay || place.closely);
}

/// The days around a change of the clocks.
void ScheduleCasesTest::live(const Place &place, const QDateTime &change, const QTime &time,
                             Days days, Mishap mishap) {
    const QTimeZone zone(place.zone);
    const QDate day = dayOf(change, zone);
    SCOPED_TRACE(
        QStringLiteral("%1 %2 %3, days %4, mishap %5")
            .arg(QString::fromLatin1(place.zone), day.toString(Qt::ISODate), time.toString())
            .arg(int(days))
            .arg(int(mishap))
            .toStdString());
    const Schedule one{{weekdayOf(day)}, time.hour(), time.minute()};
    Schedule schedule = one;
    if (days == Days::ItAndTheNext) {
        schedule.weekdays += weekdayOf(day.addDays(1));
    } else if (days == Days::All) {
        schedule.weekdays = {1, 2, 3, 4, 5, 6, 7};
    }
    preferences.change(&Settings::schedule, schedule);
    // At no moment that a run is due at.
    const QDateTime begin = change.addDays(-1).addSecs(-13 * 60);
    const QDateTime end = change.addDays(2).addSecs(13 * 60);
    const auto slot = one.nextRun(begin, zone);
    ASSERT_TRUE(slot);
    // It shows that time, or comes with the skip.
    EXPECT_TRUE(slot->toTimeZone(zone).time() == time || *slot == change);
    Simulation life(preferences, clock, {{begin, zone}}, mishap);
    life.live(begin, end, *slot);
    QStringList due = slotsBetween(begin, end, zone);
    for (const QString &each : std::as_const(due)) {
        EXPECT_EQ(life.served(each), 1) << each.toStdString();
    }
    const QString touched = *schedule.slotAt(*slot, zone);
    EXPECT_EQ(life.banners.value(touched), mishap == Mishap::Asleep ? 1 : 0);
    due += {life.runs.keys() + life.banners.keys()};
    due.removeDuplicates();
    // The last look may be a little past the end.
    EXPECT_LE(due.size(), slotsBetween(begin, end.addSecs(900), zone).size());
}

TEST_F(ScheduleCasesTest, every_slot_has_one_run_or_one_banner_whatever_the_clocks_do) {
    const Place places[] = {
        {"Europe/Paris", 2026, true},     {"America/Santiago", 2026},
        {"America/Havana", 2026},         {"Asia/Beirut", 2026},
        {"Africa/Cairo", 2026},           {"America/St_Johns", 2006},
        {"America/New_York", 2026, true}, {"Pacific/Apia", 2011},
        {"Asia/Kolkata", 2026},           {"Australia/Lord_Howe", 2026, true},
    };
    const QTime times[] = {QTime(0, 0),  QTime(0, 30), QTime(1, 45), QTime(2, 0),
                           QTime(2, 30), QTime(8, 0),  QTime(23, 30)};
    const Mishap mishaps[] = {Mishap::None, Mishap::Asleep, Mishap::BackAnHour, Mishap::BackADay,
                              Mishap::BackDuringTheRun};
    int cases = 0;
    for (const Place &place : places) {
        const QTimeZone zone(place.zone);
        ASSERT_TRUE(zone.isValid()) << place.zone;
        for (const QDateTime &change : changesIn(zone, place.year)) {
            for (const QTime &time : times) {
                for (const Days days : {Days::TheDay, Days::ItAndTheNext, Days::All}) {
                    if (!isLookedAt(place, time, days)) {
                        continue;
                    }
                    for (const Mishap mishap : mishaps) {
                        ++cases;
                        live(place, change, time, days, mishap);
                    }
                }
            }
        }
    }
    EXPECT_GT(cases, 500);
}

TEST_F(ScheduleCasesTest, a_journey_there_and_back_leaves_each_slot_its_one_run_or_banner) {
    const QTimeZone paris("Europe/Paris");
    const QTimeZone york("America/New_York");
    const QDateTime monday(QDate(2026, 11, 9), QTime(0, 0), Qt::UTC);
    const QList<QList<int>> weeks{{2}, {2, 3}, {1, 2, 3, 4, 5, 6, 7}};
    const QTime times[] = {QTime(0, 30), QTime(8, 0), QTime(23, 30)};
    int cases = 0;
    for (const QList<int> &days : weeks) {
        for (const QTime &time : times) {
            for (int out = 0; out < 24; out += 6) { // the hour it leaves at, on the Monday
                for (const int back : {30, 53}) {   // hours later
                    ++cases;
                    preferences.change(&Settings::schedule,
                                       Schedule{days, time.hour(), time.minute()});
                    const QDateTime begin = monday.addDays(-3).addSecs(12 * 3600);
                    const QDateTime leaves = monday.addSecs(out * 3600 + 1800);
                    Simulation life(
                        preferences, clock,
                        {{begin, paris}, {leaves, york}, {leaves.addSecs(back * 3600), paris}},
                        Mishap::None);
                    life.live(begin, monday.addDays(6).addSecs(12 * 3600), begin);
                    const QString what = QStringLiteral("days %1 at %2, out %3, back %4")
                                             .arg(days.size())
                                             .arg(time.toString())
                                             .arg(out)
                                             .arg(back);
                    for (int day = -2; day <= 5; ++day) {
                        const QDate date = monday.date().addDays(day);
                        const QString slot = QDateTime(date, time, Qt::UTC)
                                                 .toString(QStringLiteral("yyyy-MM-dd'T'HH:mm"));
                        EXPECT_EQ(life.served(slot), days.contains(weekdayOf(date)) ? 1 : 0)
                            << what.toStdString() << ' ' << slot.toStdString();
                    }
                }
            }
        }
    }
    EXPECT_EQ(cases, 72);
}

} // namespace
} // namespace vorle
