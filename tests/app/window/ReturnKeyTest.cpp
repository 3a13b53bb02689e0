// ↩ opens the source of the chosen card, and nothing else that is pressed by it does.

#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <QKeyEvent>

namespace vorle {
namespace {

using test::text;

class ReturnKeyTest : public test::OpenWindow {
protected:
    bool tabTo(const QString &button) {
        for (int i = 0; i < 60; ++i) {
            press(Qt::Key_Tab);
            if (window().activeFocusItem()->property("text").toString() == button) {
                return true;
            }
        }
        return false;
    }
    void hold() {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(&window(), &held);
        QCoreApplication::processEvents();
    }
    qsizetype opened() const { return m_links.opened.size(); }
};

TEST_F(ReturnKeyTest, what_it_pressed_or_put_away_opens_nothing) {
    fill();
    open();
    // A panel's field lets it go on to whatever lies behind once it has done its work.
    m_pasteboard.replace(text("http://127.0.0.1:9/a"));
    press(Qt::Key_N, Qt::ControlModifier);
    press(Qt::Key_Return);
    EXPECT_EQ(store().count(), 7) << "the link was added";
    EXPECT_FALSE(window().property("covered").toBool());
    EXPECT_EQ(opened(), 0);
    hold();
    EXPECT_EQ(opened(), 0);

    // A button that goes with its card: the hand that hurries presses where it was.
    shell().actions()->selection()->show(shell().inbox()->topicIdAt(1));
    ASSERT_EQ(chosen(), u"Sujet 9");
    ASSERT_TRUE(tabTo(text("Garder")));
    for (int i = 0; i < 3; ++i) {
        press(Qt::Key_Return);
        hold();
    }
    EXPECT_EQ(statusOf(text("Sujet 9")), TopicStatus::Program);
    EXPECT_EQ(opened(), 0);

    // A button that stays, on the page.
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    ASSERT_TRUE(enlarged());
    ASSERT_TRUE(tabTo(text("D’où vient la note")));
    press(Qt::Key_Return);
    EXPECT_EQ(opened(), 0);
    press(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(opened(), 0);
    press(Qt::Key_Escape);

    // Where the keyboard rests, it does; once.
    press(Qt::Key_Return);
    EXPECT_EQ(opened(), 1);
    hold();
    hold();
    EXPECT_EQ(opened(), 1);
}

} // namespace
} // namespace vorle
