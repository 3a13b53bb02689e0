#include "desktop/Notifier.h"

#include "base/OnDisk.h"
#include "platform/fakes/FakeNotifications.h"
#include "tests/core/Samples.h"
#include "tests/support/HostileTexts.h"
#include "tests/support/Settle.h"
#include "tests/support/Text.h"
#include "tests/support/Variables.h"
#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using Standing = Notifications::Standing;
using test::text;

class NotifierTest : public testing::Test {
protected:
    NotifierTest() { m_variables.set("TMPDIR", folder.path()); }

    Notifier &notifier() {
        if (!m_notifier) {
            m_notifier = std::make_unique<Notifier>(
                Notifier::Parts{system, preferences, clock, text("Inter"), QTimeZone::utc()});
        }
        return *m_notifier;
    }
    static TopicsReady ready(int count, bool others = false, bool urgent = false) {
        return {.count = count,
                .others = others,
                .urgent = urgent,
                .title = text("undici 7 : une faille"),
                .score = 9};
    }
    /// What is told lies in the folder of temporary files.
    QStringList pictures() const {
        return QDir(folder.path()).entryList({text("vorle-score-*.png")});
    }
    /// Its picture is drawn and written elsewhere.
    void tellReady(const TopicsReady &ready) {
        const auto before = system.posted.size();
        notifier().topicsReady(ready);
        EXPECT_EQ(system.posted.size(), before) << "the main thread has written the picture";
        test::spinUntil([&] { return system.posted.size() > before; });
    }
    void end() { m_notifier.reset(); }
    /// The hour strikes as many times as it does from now to there, looked at every ten minutes.
    qsizetype toldUntil(const QDateTime &then) {
        const qsizetype before = system.posted.size();
        for (; clock.moment < then; clock.moment = clock.moment.addSecs(600)) {
            notifier().lookAtClock();
        }
        return system.posted.size() - before;
    }

    QTemporaryDir folder;
    test::FakeNotifications system;
    test::FixedClock clock; // Monday 2 November 2026, 9:30
    Preferences preferences{std::make_unique<SettingsFile>(folder.filePath(text("settings.json")))};

private:
    test::Variables m_variables;
    std::unique_ptr<Notifier> m_notifier;
};

TEST_F(NotifierTest, the_mode_decides_after_a_run_and_a_failure_is_told_in_all_but_never) {
    const struct {
        NotifyMode mode;
        const char *usual;  ///< the category told after topics, "" for silence
        const char *urgent; ///< after urgent ones
        const char *failed; ///< after a failure
    } cases[] = {
        {NotifyMode::EveryRun, "ready", "urgent", "problem"},
        {NotifyMode::UrgentOnly, "", "urgent", "problem"},
        {NotifyMode::Never, "", "", ""},
    };
    for (const auto &each : cases) {
        preferences.change(&Settings::notifyMode, each.mode);
        const auto told = [&](const std::function<void()> &what) {
            system.posted.clear();
            what();
            test::settle();
            test::waitFor(onDisk([] { return true; })); // a picture would be there by now
            QCoreApplication::processEvents();
            return system.posted.isEmpty() ? QString() : system.posted.first().category;
        };
        EXPECT_EQ(told([&] { notifier().topicsReady(ready(3)); }), text(each.usual));
        EXPECT_EQ(told([&] { notifier().topicsReady(ready(3, true, true)); }), text(each.urgent));
        EXPECT_EQ(told([&] { notifier().runFailed(text("x")); }), text(each.failed));
        EXPECT_EQ(told([&] { notifier().topicsReady(ready(0)); }), QString());
    }
    for (const char *category : {"ready", "urgent"}) {
        const auto known =
            std::ranges::find(system.categories, text(category), &NotificationCategory::identifier);
        ASSERT_NE(known, system.categories.end());
        EXPECT_EQ(known->actions.first().label, text("Trier maintenant"));
    }
}

TEST_F(NotifierTest, says_how_many_wait_what_is_best_and_shows_its_score) {
    const struct {
        int count;
        bool others;
        const char *title;
    } cases[] = {{12, false, "12 sujets à trier"},
                 {12, true, "12 autres sujets à trier"},
                 {1, false, "1 sujet à trier"},
                 {1, true, "1 autre sujet à trier"}};
    for (const auto &each : cases) {
        tellReady(ready(each.count, each.others));
        EXPECT_EQ(system.posted.last().title, text(each.title));
        EXPECT_EQ(pictures().size(), 1) << "the one before is gone";
    }
    const Notification told = system.posted.last();
    EXPECT_EQ(told.identifier, text("ready"));
    EXPECT_EQ(told.section, text("À trier"));
    EXPECT_EQ(told.sound, Notification::Sound::Default);
    EXPECT_EQ(told.body, text("undici 7\u00A0: une faille"));
    const QImage picture(told.picture);
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(picture.pixelColor(picture.width() / 2, picture.height() / 12), QColor(0xC9431A));
    notifier().runFailed(text("Claude Code n’a pas répondu."));
    EXPECT_EQ(system.posted.last().title, text("Je n’ai pas pu fouiller"));
    EXPECT_EQ(system.posted.last().body, text("Claude Code n’a pas répondu."));
    end();
    EXPECT_EQ(pictures(), QStringList());
    // A picture that cannot be written keeps nothing back.
    QDir(folder.path()).removeRecursively();
    tellReady(ready(2));
    EXPECT_EQ(system.posted.last().picture, QString());
    EXPECT_EQ(system.posted.last().title, text("2 sujets à trier"));
}

TEST_F(NotifierTest, the_person_is_asked_when_there_is_something_to_tell_and_once) {
    system.now = Standing::Unasked;
    notifier();
    EXPECT_EQ(system.asked, 0) << "at the start";
    tellReady(ready(2));
    EXPECT_EQ(system.asked, 1);
    ASSERT_EQ(system.posted.size(), 1) << "what waited for the answer";
    tellReady(ready(4));
    EXPECT_EQ(system.asked, 1);
    EXPECT_EQ(system.posted.size(), 2);
    EXPECT_EQ(notifier().trouble(), QString());

    end();
    system.now = Standing::Unasked;
    system.afterAsking = Standing::Refused;
    preferences.change(&Settings::notifyMode, NotifyMode::Never);
    int told = 0;
    QObject::connect(&notifier(), &Notifier::standingChanged, [&] { ++told; });
    notifier().askLeave();
    EXPECT_EQ(system.asked, 1) << "nothing is wanted";
    preferences.change(&Settings::notifyReminder, true);
    preferences.change(&Settings::notifyMode, NotifyMode::UrgentOnly);
    EXPECT_EQ(system.asked, 1) << "it may have been a command, with nobody there";
    EXPECT_TRUE(notifier().waitsForLeave());
    notifier().askLeave(); // the person is at the settings
    EXPECT_EQ(system.asked, 2);
    EXPECT_FALSE(notifier().waitsForLeave());
    EXPECT_GT(told, 0);
    EXPECT_FALSE(notifier().trouble().isEmpty());
    notifier().runFailed(text("x"));
    EXPECT_EQ(system.asked, 2);
    EXPECT_EQ(system.posted.size(), 2) << "a refusal holds";
    system.become(Standing::Granted); // changed their mind, in the system's settings
    notifier().runFailed(text("y"));
    EXPECT_EQ(system.posted.size(), 3);
}

TEST_F(NotifierTest, a_word_about_the_program_itself_asks_nobody_for_their_leave) {
    system.now = Standing::Unasked;
    notifier().look();
    EXPECT_FALSE(notifier().mention(text("vorle"), text("reste là")));
    EXPECT_EQ(system.asked, 0);
    system.become(Standing::Granted);
    EXPECT_TRUE(system.posted.isEmpty()) << "it is not kept for later either";
    EXPECT_TRUE(notifier().mention(text("vorle"), text("reste là")));
    ASSERT_EQ(system.posted.size(), 1);
    EXPECT_EQ(system.posted.first().body, text("reste là"));
}

TEST_F(NotifierTest, a_system_that_keeps_time_has_one_reminder_and_none_once_nothing_waits) {
    system.keeps = true;
    preferences.change(&Settings::reminder, TimeOfDay{18, 30});
    notifier().scheduleWeeklyReminder(4);
    EXPECT_TRUE(system.scheduled.isEmpty()) << "its switch is off";
    preferences.change(&Settings::notifyReminder, true);
    notifier().scheduleWeeklyReminder(4);
    const int withdrawn = system.withdrawn;
    notifier().scheduleWeeklyReminder(4);
    EXPECT_EQ(system.withdrawn, withdrawn) << "it stands as it is wanted";
    notifier().scheduleWeeklyReminder(1430);
    ASSERT_EQ(system.scheduled.size(), 1);
    const auto [reminder, moment] = system.scheduled.value(text("reminder"));
    EXPECT_EQ(moment, (WeeklyMoment{5, 18, 30}));
    EXPECT_EQ(reminder.title, text("Ton programme de la semaine"));
    EXPECT_EQ(reminder.body, text("1\u202F430 sujets t’attendent encore. Un créneau avant le "
                                  "week-end\u202F?"));
    EXPECT_EQ(reminder.section, text("Programme"));
    EXPECT_EQ(reminder.category, QString());
    EXPECT_EQ(reminder.sound, Notification::Sound::None);
    notifier().scheduleWeeklyReminder(1);
    EXPECT_TRUE(system.scheduled.value(text("reminder"))
                    .first.body.startsWith(text("1 sujet t’attend encore.")));
    notifier().scheduleWeeklyReminder(0);
    EXPECT_TRUE(system.scheduled.isEmpty());
    EXPECT_TRUE(system.posted.isEmpty());
    // One that the system did not take is asked for again, at the next look or decision.
    for (const bool looked : {true, false}) {
        notifier().scheduleWeeklyReminder(2);
        system.refuse(text("reminder"));
        ASSERT_TRUE(system.scheduled.isEmpty());
        looked ? notifier().lookAtClock() : notifier().scheduleWeeklyReminder(2);
        EXPECT_EQ(system.scheduled.size(), 1);
        notifier().scheduleWeeklyReminder(0);
    }
}

TEST_F(NotifierTest, elsewhere_it_comes_on_thursdays_while_topics_wait_and_once_a_week) {
    preferences.change(&Settings::notifyReminder, true);
    notifier().scheduleWeeklyReminder(3);
    const auto november = [](int day, int hour, int minute = 0) {
        return QDateTime(QDate(2026, 11, day), QTime(hour, minute), Qt::UTC);
    };
    EXPECT_EQ(toldUntil(november(5, 17)), 0);
    EXPECT_EQ(toldUntil(november(5, 17, 10)), 1);
    EXPECT_EQ(system.posted.last().title, text("Ton programme de la semaine"));
    EXPECT_EQ(toldUntil(november(12, 17)), 0) << "a week on";
    EXPECT_EQ(toldUntil(november(12, 18)), 1);
    // Slept through the hour: told on waking, unless the evening is over.
    clock.moment = november(19, 20);
    EXPECT_EQ(toldUntil(november(19, 20, 10)), 1);
    clock.moment = november(27, 9);
    EXPECT_EQ(toldUntil(november(27, 10)), 0);
    // An hour that is past when it is chosen was never waited for.
    clock.moment = november(26, 18).addDays(7);
    preferences.change(&Settings::reminder, TimeOfDay{17, 50});
    EXPECT_EQ(toldUntil(november(26, 19).addDays(7)), 0);
    notifier().scheduleWeeklyReminder(0);
    EXPECT_EQ(toldUntil(november(27, 9).addDays(20)), 0);
}

TEST_F(NotifierTest, strangers_texts_stay_on_their_line_and_a_tap_names_the_section) {
    QString asked;
    QObject::connect(&notifier(), &Notifier::sectionAsked,
                     [&](const QString &section) { asked = section; });
    const QStringList texts = test::hostileTexts().first(200);
    for (const QString &hostile : texts) {
        TopicsReady one = ready(1);
        one.title = hostile + QString(5000, u'x');
        tellReady(one);
        notifier().runFailed(hostile);
        for (qsizetype i = system.posted.size() - 2; i < system.posted.size(); ++i) {
            const QString &body = system.posted[i].body;
            EXPECT_LE(body.size(), 600);
            EXPECT_FALSE(std::ranges::any_of(body, [](QChar c) {
                return c.category() == QChar::Other_Control ||
                       c.category() == QChar::Other_Format ||
                       c.category() == QChar::Separator_Line ||
                       c.category() == QChar::Separator_Paragraph;
            })) << body.toStdString();
        }
    }
    system.tap({text("reminder"), text("Programme"), {}});
    EXPECT_EQ(asked, text("Programme"));
}

} // namespace
} // namespace vorle
