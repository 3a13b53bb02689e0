#include "app/labels/ScheduleText.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(ScheduleText, reads_the_times_that_people_type_and_nothing_else) {
    const std::pair<const char *, const char *> times[] = {
        {"8", "8:00"},      {"08", "8:00"},
        {"12", "12:00"},    {"0", "0:00"},
        {"8:30", "8:30"},   {"08:05", "8:05"},
        {"830", "8:30"},    {"0830", "8:30"},
        {"2359", "23:59"},  {"8h", "8:00"},
        {"8h30", "8:30"},   {" 8 H 30 ", "8:30"},
        {"18.45", "18:45"}, {"8\u00A0h\u202F15", "8:15"},
    };
    for (const auto &[typed, time] : times) {
        const auto read = parsedTime(QString::fromUtf8(typed));
        ASSERT_TRUE(read) << typed;
        EXPECT_EQ(timeOfDayText(*read).toStdString(), time) << typed;
    }
    for (const char *typed : {"", " ", "24", "24:00", "8:60", "860", "2400", "-1", "8:3", "8:300",
                              "12345", "huit", "8:30:00", "8,5", "٨", "1e1", "99999999999999999"}) {
        EXPECT_FALSE(parsedTime(QString::fromUtf8(typed))) << typed;
    }
}

TEST(ScheduleText, names_the_days_from_monday_on) {
    const std::pair<QList<int>, const char *> cases[] = {
        {{2}, "Ensuite, je fouille seul chaque lundi à 8:00."},
        {{5, 2}, "Ensuite, je fouille seul chaque lundi et jeudi à 8:00."},
        {{1, 7, 3, 3}, "Ensuite, je fouille seul chaque mardi, samedi et dimanche à 8:00."},
        {{1, 2, 3, 4, 5, 6, 7}, "Ensuite, je fouille seul chaque jour à 8:00."},
        {{}, "Aucune fouille ne part seule."},
    };
    for (const auto &[days, sentence] : cases) {
        EXPECT_EQ(scheduleText({days, 8, 0}).toStdString(), sentence);
    }
    Settings settings;
    const QDateTime now(QDate(2026, 11, 18), QTime(9, 0), Qt::UTC);
    EXPECT_EQ(nextRunSentence(settings, now, QTimeZone("Europe/Paris")).toStdString(),
              "Prochaine fouille lundi 23 novembre à 8:00.");
    settings.schedule.weekdays.clear();
    EXPECT_EQ(nextRunSentence(settings, now, QTimeZone("Europe/Paris")), QString());
}

} // namespace
} // namespace vorle
