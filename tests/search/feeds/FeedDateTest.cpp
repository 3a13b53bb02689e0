#include "search/feeds/FeedDate.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

QByteArray read(const char *text) {
    const auto date = parseFeedDate(text);
    return date ? date->toString(Qt::ISODate).toUtf8() : QByteArray("none");
}

TEST(FeedDate, reads_each_form_into_utc) {
    const std::pair<const char *, const char *> cases[] = {
        {"Thu, 19 Nov 2026 18:05:09 +0100", "2026-11-19T17:05:09Z"},
        {"Sun, 1 Nov 2026 08:00:00 -0330", "2026-11-01T11:30:00Z"},
        {"19 Nov 2026 18:05:09 +0000", "2026-11-19T18:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 PST", "2026-11-20T02:05:09Z"},
        {"Thu, 19 Nov 2026 18:05 +0000", "2026-11-19T18:05:00Z"},
        {"2026-11-19T18:05:09+0100", "2026-11-19T17:05:09Z"},
        {"2026-11-19T18:05:09.987-0100", "2026-11-19T19:05:09Z"},
        // What is written in these forms besides.
        {"2026-11-19T18:05:09Z", "2026-11-19T18:05:09Z"},
        {"2026-11-19T18:05:09+05:45", "2026-11-19T12:20:09Z"},
        {"2026-11-19T18:05:09.123456Z", "2026-11-19T18:05:09Z"},
        {"\n\t Thu,  19  Nov\n2026 18:05:09 GMT \r\n", "2026-11-19T18:05:09Z"},
        {"thursday, 19 november 2026 18:05:09 utc", "2026-11-19T18:05:09Z"},
        {"Fri, 19 Nov 2026 18:05:09 UT", "2026-11-19T18:05:09Z"}, // a wrong weekday
        {"Thu, 19 Nov 26 18:05:09 Z", "2026-11-19T18:05:09Z"},
        {"Thu, 19 Nov 98 18:05:09 EDT", "1998-11-19T22:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 A", "2026-11-19T18:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 GMT+0200", "2026-11-19T16:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 CET", "2026-11-19T17:05:09Z"},
        {"Sun, 19 Jul 2026 18:05:09 CEST", "2026-07-19T16:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 +0100 (CET)", "2026-11-19T17:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 EST (heure de Montréal)", "2026-11-19T23:05:09Z"},
        {"Sun, 19 Jul 2026 18:05:09 BST", "2026-07-19T17:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 EET", "2026-11-19T16:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 MSK", "2026-11-19T15:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 IST", "2026-11-19T12:35:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 JST", "2026-11-19T09:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 ACDT", "2026-11-19T07:35:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 NZDT", "2026-11-19T05:05:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 NST", "2026-11-19T21:35:09Z"},
        {"Thu, 19 Nov 2026 18:05:09 XYZT", "2026-11-19T18:05:09Z"}, // unknown: taken for UTC
        {"2026-11-19T18:05:09 CET", "2026-11-19T17:05:09Z"},
        {"Thu, 31 Dec 2026 23:59:60 GMT", "2027-01-01T00:00:00Z"},
        {"Mon, 29 Feb 2016 12:00:00 GMT", "2016-02-29T12:00:00Z"},
        {"Thu, 29 Feb 2024 23:00:00 -0100", "2024-03-01T00:00:00Z"},
        {"0001-01-01T00:00:00Z", "0001-01-01T00:00:00Z"},
        {"1969-12-31T23:59:59Z", "1969-12-31T23:59:59Z"},
    };
    for (const auto &[text, expected] : cases) {
        EXPECT_EQ(read(text), expected) << text;
    }
}

TEST(FeedDate, anything_else_is_no_date) {
    for (const char *text : {"",
                             " ",
                             "hier",
                             "2026-11-19",
                             "2026-11-19T18:05Z",
                             "2026-11-19T18:05:09",
                             "2026-11-19 18:05:09Z",
                             "19 Nov 2026 18:05 +0000",
                             "Thu 19 Nov 2026 18:05:09 GMT",
                             "jeu., 19 nov. 2026 18:05:09 GMT",
                             "Thu, 19 Fev 2026 18:05:09 GMT",
                             "Thu, 19 Nov 2026 18:05:09",
                             "Thu, 19 Nov 2026 06:05:09 PM",
                             "Thu, 19 Nov 2026 18:05:09 quelque part",
                             "Thu, 19 Nov 2026 18:05:09 (CET)",
                             "Thu, 19 Nov 2026 18:05:09 +0100 (CET",
                             "Thu, 19 Nov 2026 24:00:00 GMT",
                             "Thu, 19 Nov 2026 18:60:00 GMT",
                             "Sun, 29 Feb 2026 12:00:00 GMT",
                             "Thu, 31 Nov 2026 12:00:00 GMT",
                             "Thu, 0 Nov 2026 12:00:00 GMT",
                             "2026-13-01T00:00:00Z",
                             "2026-00-01T00:00:00Z",
                             "2026-11-19T18:05:09.Z",
                             "2026-11-19T18:05:09+2400",
                             "2026-11-19T18:05:09+01:60",
                             "2026-11-19T18:05:09+010",
                             "02026-11-19T18:05:09Z",
                             "Thu, 19 Nov 20266 18:05:09 GMT",
                             "Thu,",
                             "Thu, 19",
                             "+0100",
                             "0000-01-01T00:00:00Z",
                             "Thu, 19 Novembre 2026 18:05:09 GMT",
                             "Thu, 199 Nov 2026 18:05:09 GMT",
                             "Wednesdays, 19 Nov 2026 18:05:09 GMT"}) {
        EXPECT_EQ(read(text), "none") << text;
    }
}

/// The calendar's arithmetic is ours: every day of four centuries must be the platform's.
TEST(FeedDate, counts_days_as_the_calendar_does) {
    for (QDate day(1899, 12, 31); day < QDate(2301, 1, 2); day = day.addDays(1)) {
        const QByteArray text = day.toString(Qt::ISODate).toUtf8() + "T12:34:56Z";
        const auto date = parseFeedDate(text);
        ASSERT_TRUE(date.has_value()) << text.constData();
        ASSERT_EQ(*date, QDateTime(day, QTime(12, 34, 56), Qt::UTC)) << text.constData();
    }
}

} // namespace
} // namespace vorle
