// What the window says of a run that waits for its rest.

#include "search/run/RunRemainder.h"
#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

namespace vorle {
namespace {

using test::text;

class WaitingRunTest : public test::OpenWindow {
protected:
    /// Opens the window beside what a run left that waits until then.
    void openBeside(const std::optional<QDateTime> &until) {
        const QDateTime now = m_app->clock().now();
        RunRemainder rest;
        rest.report.date = now.addSecs(-60);
        rest.report.waits =
            RunWaits{now.addSecs(-60), until, text("Codex"), text("limit"), 0, 2, now.addDays(-7)};
        rest.scopes = {RemainingScope{text("Tes sujets"), Origin::List, {}, {}}};
        ASSERT_TRUE(RemainderFile(store().file()).write(rest, now));
        fill();
        open();
    }
    bool says(const QString &words) {
        for (const QString &shown : shownTexts()) {
            if (shown.simplified().contains(words)) {
                return true;
            }
        }
        return false;
    }
};

TEST_F(WaitingRunTest, stays_calm_where_it_goes_on_by_itself) {
    openBeside(m_app->clock().now().addSecs(3600));
    EXPECT_TRUE(says(text("La suite ")));
    EXPECT_EQ(buttonAt(text("Continuer maintenant")), QPoint(-1, -1));
}

TEST_F(WaitingRunTest, is_offered_where_nobody_knows_until_when_and_may_be_left) {
    openBeside({});
    EXPECT_TRUE(says(text("Codex a atteint sa limite.")));
    EXPECT_TRUE(says(text("il reste 2 liens à juger.")));
    EXPECT_NE(buttonAt(text("Continuer maintenant")), QPoint(-1, -1));
    click(text("Laisser"));
    EXPECT_FALSE(says(text("Codex a atteint sa limite.")));
    EXPECT_FALSE(says(text("La suite ")));
    EXPECT_FALSE(m_app->engine().remainder());
}

} // namespace
} // namespace vorle
