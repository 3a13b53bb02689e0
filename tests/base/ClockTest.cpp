#include "base/Clock.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(Iso8601, reads_the_forms_in_use_and_writes_utc_to_the_second) {
    const std::pair<const char *, const char *> good[] = {
        {"2026-11-21T08:00:00Z", "2026-11-21T08:00:00Z"},
        {"2026-11-21T08:00:00+02:00", "2026-11-21T06:00:00Z"},
        {"2026-11-21t08:00:00-0530", "2026-11-21T13:30:00Z"},
        {"2026-11-21T08:00:00.987654Z", "2026-11-21T08:00:00Z"},
        {"2024-02-29T23:59:60Z", "2024-02-29T23:59:59Z"},
        {"1969-12-31T23:59:59Z", "1969-12-31T23:59:59Z"},
    };
    for (const auto &[in, out] : good) {
        const auto moment = parseIso8601(in);
        ASSERT_TRUE(moment) << in;
        EXPECT_EQ(formatIso8601(*moment), out);
    }
    for (const char *bad :
         {"", "2026-11-21", "2026-11-21T08:00:00", "2026-02-30T08:00:00Z", "2026-11-21T24:00:00Z",
          "2026-11-21T08:00Z", "2026-11-21 08:00:00Z", "2026-11-21T08:00:00.Z",
          "2026-11-21T08:00:00Zx", "2026-1é-21T08:00:00Z", "2026-11-21T08:00:00+2",
          "2026-11-21T08:00:00+25:00", "9999-12-31T23:59:59-01:00"}) {
        EXPECT_FALSE(parseIso8601(bad)) << bad;
    }
}

} // namespace
} // namespace vorle
