#include "agents/UsageLimit.h"
#include "base/Clock.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

QString text(const char *utf8) { return QString::fromUtf8(utf8); }

QDateTime utc(const char *iso) { return *parseIso8601(QByteArray(iso)); }

// 10:00 in Lisbon and UTC, 11:00 in Paris, where the machine is.
constexpr auto sundayMorning = "2026-11-22T10:00:00Z";

TEST(UsageLimit, is_recognised_by_the_agents_own_sentences_and_read_to_its_hour) {
    const QTimeZone paris("Europe/Paris");
    const char *const unknown = "";
    const struct {
        const char *words;
        const char *now;
        const char *until; // "" where it is not known
    } cases[] = {
        {"You've hit your limit · resets 1pm (Europe/Lisbon)", sundayMorning,
         "2026-11-22T13:00:00Z"},
        {"You’ve hit your limit · resets 1pm (Europe/Paris)", sundayMorning,
         "2026-11-22T12:00:00Z"},
        {"You've hit your weekly limit · resets Nov 25, 1:30 pm (UTC)", sundayMorning,
         "2026-11-25T13:30:00Z"},
        {"Claude usage limit reached. Your limit resets at 9 a.m.", sundayMorning,
         "2026-11-23T08:00:00Z"},
        {"You've hit your limit · resets 13:00", sundayMorning, "2026-11-22T12:00:00Z"},
        {"API Error: Rate limit reached", sundayMorning, unknown},
        {"You've hit your usage limit. Upgrade your plan or try again in 2 days 17 hours 14 "
         "minutes.",
         sundayMorning, "2026-11-25T03:14:00Z"},
        {"You've hit your usage limit. … try again in 1 hour and 5 minutes, or later",
         sundayMorning, "2026-11-22T11:05:00Z"},
        {"You've hit your usage limit. Try again in 30 seconds.", sundayMorning,
         "2026-11-22T10:01:00Z"},
        {"You've hit your usage limit. … try again at 2:57 PM.", sundayMorning,
         "2026-11-22T13:57:00Z"},
        {"You've hit your usage limit. Try again at Nov 29th, 2026 2:57 PM.", sundayMorning,
         "2026-11-29T13:57:00Z"},
        // Noon and midnight.
        {"hit your limit · resets 12am (UTC)", sundayMorning, "2026-11-23T00:00:00Z"},
        {"hit your limit · resets 12pm (UTC)", sundayMorning, "2026-11-22T12:00:00Z"},
        // Two clocks: just past is just ahead, the night's end too; more than that is tomorrow.
        {"hit your limit · resets 10am (UTC)", "2026-11-22T10:02:00Z", "2026-11-22T10:04:00Z"},
        {"hit your limit · resets 10am (UTC)", "2026-11-22T10:02:01Z", "2026-11-23T10:00:00Z"},
        {"hit your limit · resets 12am (UTC)", "2026-11-22T00:01:00Z", "2026-11-22T00:03:00Z"},
        {"hit your limit · resets 11:59pm (UTC)", "2026-11-22T00:00:30Z", "2026-11-22T00:02:30Z"},
        {"hit your limit · resets Jan 2, 9am (UTC)", "2026-12-30T10:00:00Z",
         "2027-01-02T09:00:00Z"},
        // 2:30 does not exist on that day: as soon as the clocks have passed it.
        {"hit your limit · resets 2:30am (Europe/Paris)", "2027-03-28T00:00:00Z",
         "2027-03-28T01:00:00Z"},
        // Not to be believed, or not to be understood: never guessed.
        {"hit your usage limit, try again in 99 days", sundayMorning, unknown},
        {"hit your limit · resets Mar 1, 9am (UTC)", sundayMorning, unknown},
        {"hit your limit · resets 1pm (Atlantis/Capital)", sundayMorning, unknown},
        {"hit your limit · resets 13pm (UTC)", sundayMorning, unknown},
        {"hit your limit · resets 25:00", sundayMorning, unknown},
        {"hit your limit · resets Feb 30, 1pm", sundayMorning, unknown},
        {"hit your limit · resets Thursday at 1pm", sundayMorning, unknown},
        {"hit your limit · resets 13", sundayMorning, unknown},
        {"hit your usage limit, try again in a while", sundayMorning, unknown},
        // Other failures.
        {"Context limit reached, try again in 2 hours", sundayMorning, nullptr},
        {"Your rate limit is high · resets 1pm", sundayMorning, nullptr},
        {"le serveur est occupé", sundayMorning, nullptr},
        {"", sundayMorning, nullptr},
    };
    for (const auto &one : cases) {
        const auto limit = usageLimit(text(one.words));
        ASSERT_EQ(limit.has_value(), one.until != nullptr) << one.words;
        if (limit) {
            const auto until = limit->until(utc(one.now), paris);
            EXPECT_EQ(until ? formatIso8601(*until) : QByteArray(), QByteArray(one.until))
                << one.words;
        }
    }
}

TEST(UsageLimit, keeps_the_sentence_alone_and_harmless) {
    EXPECT_EQ(
        usageLimit(text("warming up\n  You've hit your limit · resets 1pm \x1b[0m\nbye"))->words,
        text("You've hit your limit · resets 1pm"));
    EXPECT_EQ(usageLimit(text("hit your limit ") + QString(1'000, u'x'))->words.size(), 300);
}

} // namespace
} // namespace vorle
