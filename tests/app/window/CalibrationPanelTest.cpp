#include "core/ScoreScale.h"
#include "tests/app/window/OpenWindow.h"

#include <gmock/gmock.h>

namespace vorle {
namespace {

using testing::Contains;
using testing::Not;

class CalibrationPanelTest : public test::OpenWindow {
protected:
    void begin() {
        Preferences &preferences = m_app->preferences();
        preferences.change(&Settings::onboarded, true);
        preferences.change(&Settings::calibrated, false);
        preferences.change(&Settings::lastSearch, m_app->clock().now());
        fill();
        open();
        ASSERT_THAT(shownTexts(), Contains(QStringLiteral("Apprends-moi tes goûts")));
        press(Qt::Key_Tab);
        press(Qt::Key_Tab);
        press(Qt::Key_Return); // "Commencer"
        ASSERT_TRUE(window().property("covered").toBool());
    }
};

TEST_F(CalibrationPanelTest, is_answered_by_keys_alone_and_left_with_the_list_as_it_was) {
    begin();
    EXPECT_THAT(shownTexts(), Contains(QStringLiteral("1 sur 3")));
    press(Qt::Key_7); // no score is asked yet
    press(Qt::Key_X);
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Dismissed);
    press(Qt::Key_G);       // nor a decision now
    press(Qt::Key_section); // the 6 of a Mac's French keyboard
    EXPECT_THAT(shownTexts(), Contains(QStringLiteral("Noter 6")));
    press(Qt::Key_1);
    press(Qt::Key_0);
    press(Qt::Key_Return);
    EXPECT_THAT(shownTexts(), Contains(QStringLiteral("2 sur 3")));
    const auto scoreOf = [this](const QString &title) {
        for (const TopicPtr &topic : store().topics()) {
            if (topic->title == title) {
                return shownScore(*topic).value_or(-1);
            }
        }
        return -1;
    };
    EXPECT_EQ(scoreOf(QStringLiteral("Sujet 9")), 10);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Inbox);
    EXPECT_EQ(scoreOf(QStringLiteral("Sujet 9")), 9);
    press(Qt::Key_G);
    press(Qt::Key_Escape); // without a score: the decision stands
    EXPECT_FALSE(window().property("covered").toBool());
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Program);
    EXPECT_EQ(chosen(), QStringLiteral("Sujet 8"));
    EXPECT_THAT(shownTexts(), Contains(QStringLiteral("Continuer")));
    press(Qt::Key_X); // keys act on the cards again
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 8")), TopicStatus::Dismissed);
}

TEST_F(CalibrationPanelTest, its_end_says_so_and_its_offer_goes) {
    begin();
    for (int i = 0; i < 3; ++i) {
        press(Qt::Key_L);
        press(Qt::Key_Return);
    }
    EXPECT_THAT(shownTexts(), Contains(QStringLiteral("C’est noté")));
    press(Qt::Key_Return);
    EXPECT_FALSE(window().property("covered").toBool());
    EXPECT_THAT(shownTexts(), Not(Contains(QStringLiteral("Apprends-moi tes goûts"))));
    EXPECT_TRUE(m_app->preferences().settings().calibrated);
}

} // namespace
} // namespace vorle
