#include "app/models/settings/BenchPreview.h"

#include "tests/support/ScriptedAgent.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using test::text;

class BenchPreviewTest : public testing::Test {
protected:
    ~BenchPreviewTest() override { test::waitFor(preview.stopped()); }

    void judge() {
        preview.start();
        test::spinUntil([this] { return !preview.running(); });
    }
    BenchRow row(int index) { return preview.rows()[index].value<BenchRow>(); }

    test::ScriptedAgent agents;
    EngineAgent agent{agents.environment(), {}};
    Asker asker{agent, Resources(QStringLiteral(VORLE_RESOURCES)), 1ms};
    BenchPreview preview{asker};
};

TEST_F(BenchPreviewTest, judges_its_ten_samples_when_it_is_asked_to) {
    agents.signIn();
    agents.answerBy(R"({"candidates":{}})");
    EXPECT_EQ(preview.rows().size(), 10);
    EXPECT_EQ(preview.costText(), text("2 appels à ton IA"));
    EXPECT_FALSE(row(0).judged);
    EXPECT_EQ(agents.calls().size(), 0) << "it costs calls: none unasked";
    judge();
    EXPECT_FALSE(preview.failed()) << preview.statusText().toStdString();
    EXPECT_TRUE(preview.statusText().startsWith(u"10 sujets jugés"))
        << preview.statusText().toStdString();
    EXPECT_EQ(agents.calls(u"judge"), 2);
    EXPECT_EQ(preview.rows().size(), 10);
    EXPECT_EQ(row(0).look.digits, text("7"));
    EXPECT_TRUE(row(0).expected.startsWith(u"attendu "));
    EXPECT_EQ(row(0).text, text("gist"));
}

TEST_F(BenchPreviewTest, says_why_nothing_was_judged_and_can_be_stopped_and_tried_again) {
    agents.answerBy(R"({"candidates":{},"judge":"hang"})");
    judge();
    EXPECT_TRUE(preview.failed());
    EXPECT_EQ(preview.statusText(), text("Claude Code n’est plus connecté."));
    agents.signIn();
    preview.start();
    test::spinUntil([this] { return agents.living() > 0; });
    preview.stop();
    test::spinUntil([this] { return !preview.running(); });
    EXPECT_FALSE(preview.failed());
    EXPECT_EQ(preview.statusText(), text("Arrêté."));
    EXPECT_EQ(agents.living(), 0);
    test::waitFor(preview.stopped());
    agents.answerBy(R"({"candidates":{}})");
    judge();
    EXPECT_TRUE(row(9).judged);
}

} // namespace
} // namespace vorle
