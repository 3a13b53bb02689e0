#include "search/run/RunRemainder.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(RunRemainder, goes_on_by_itself_within_half_a_day_of_its_hour) {
    const QDateTime one(QDate(2026, 11, 22), QTime(13, 0), Qt::UTC);
    using Action = ResumeAction;
    const struct {
        std::optional<QDateTime> until;
        QDateTime now;
        bool asked;
        bool running;
        Action expected;
    } cases[] = {
        {one, one.addSecs(-1), false, false, Action::Wait},
        {one, one, false, false, Action::Go},
        {one, one, false, true, Action::Wait},
        {one, one, true, false, Action::Offer},
        {one, one.addSecs(12 * 3600), false, false, Action::Go},
        {one, one.addSecs(12 * 3600 + 1), false, false, Action::Offer},
        {{}, one, false, false, Action::Offer},
        {one, one.addDays(-30), false, false, Action::Wait},
        {one, one.addDays(-32), false, false, Action::Offer}, // the clock was set back
    };
    for (const auto &each : cases) {
        RunRemainder rest;
        rest.report.waits = RunWaits();
        rest.report.waits->until = each.until;
        rest.asked = each.asked;
        EXPECT_EQ(resumeAction(rest, each.now, each.running), each.expected)
            << formatIso8601(each.now).toStdString();
    }
}

} // namespace
} // namespace vorle
