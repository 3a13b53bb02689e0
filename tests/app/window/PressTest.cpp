#include "app/window/items/Press.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace vorle {
namespace {

/// A list that moves under the mouse, and a button in it.
class PressTest : public testing::Test {
protected:
    PressTest() {
        m_window.resize(200, 200);
        m_press.setParentItem(m_window.contentItem());
        m_press.setSize({100, 40});
        m_other.setParentItem(m_window.contentItem());
        m_other.setSize({100, 40});
        m_other.setY(100);
        QObject::connect(&m_press, &Press::clicked, &m_press, [this] { ++m_clicks; });
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
        m_window.requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }
    void down() { QTest::mousePress(&m_window, Qt::LeftButton, {}, inside); }
    void move(QPoint to) { QTest::mouseMove(&m_window, to); }
    void up(QPoint at) { QTest::mouseRelease(&m_window, Qt::LeftButton, {}, at); }
    void keyDown(Qt::Key key, Qt::KeyboardModifiers held = {}) {
        QTest::keyPress(&m_window, key, held);
    }
    void keyUp(Qt::Key key) { QTest::keyRelease(&m_window, key); }
    void repeat(int key) {
        QKeyEvent event(QEvent::KeyPress, key, {}, QString(), true);
        QCoreApplication::sendEvent(&m_window, &event);
    }

    static constexpr QPoint inside{50, 20};
    static constexpr QPoint outside{150, 80};
    QQuickWindow m_window;
    Press m_press;
    Press m_other;
    int m_clicks = 0;
};

TEST_F(PressTest, it_is_pressed_where_it_is_let_go_and_by_bare_keys_once) {
    const struct {
        const char *what;
        int clicks;
        std::function<void()> act;
    } cases[] = {
        {"let go over it", 1, [this] { down(), up(inside); }},
        {"let go elsewhere", 0, [this] { down(), move(outside), up(outside); }},
        {"pulled out and brought back", 1,
         [this] { down(), move(outside), move(inside), up(inside); }},
        {"another button", 0,
         [this] { QTest::mouseClick(&m_window, Qt::RightButton, {}, inside); }},
        {"twice in a row", 2,
         [this] { QTest::mouseDClick(&m_window, Qt::LeftButton, {}, inside); }},
        {"hidden meanwhile", 0, [this] { down(), m_press.setVisible(false), up(inside); }},
        {"disabled meanwhile, and let go after a move", 0,
         [this] {
             down(), m_press.setEnabled(false), m_press.setEnabled(true);
             move(inside + QPoint(3, 0)), up(inside);
         }},
        {"the keyboard goes elsewhere meanwhile", 1,
         [this] { down(), m_other.forceActiveFocus(), up(inside); }},
        {"Space", 1, [this] { keyDown(Qt::Key_Space), keyUp(Qt::Key_Space); }},
        {"Space held down", 1,
         [this] {
             keyDown(Qt::Key_Space), repeat(Qt::Key_Space), repeat(Qt::Key_Space);
             keyUp(Qt::Key_Space);
         }},
        {"Space, and the keyboard goes elsewhere", 0,
         [this] { keyDown(Qt::Key_Space), m_other.forceActiveFocus(), keyUp(Qt::Key_Space); }},
        {"Space with Shift", 0,
         [this] { keyDown(Qt::Key_Space, Qt::ShiftModifier), keyUp(Qt::Key_Space); }},
        {"Return, held down", 1, [this] { keyDown(Qt::Key_Return), repeat(Qt::Key_Return); }},
        {"Return with Ctrl", 0, [this] { keyDown(Qt::Key_Return, Qt::ControlModifier); }},
        {"Return where it is left to others", 0,
         [this] { m_press.setProperty("takesReturn", false), keyDown(Qt::Key_Return); }},
        {"Return while it is hidden", 0,
         [this] { m_press.setVisible(false), keyDown(Qt::Key_Return); }},
    };
    for (const auto &each : cases) {
        m_press.setVisible(true);
        m_press.setEnabled(true);
        m_press.setProperty("takesReturn", true);
        m_other.forceActiveFocus();
        m_press.forceActiveFocus(Qt::TabFocusReason);
        ASSERT_TRUE(m_press.hasVisualFocus());
        m_clicks = 0;
        each.act();
        EXPECT_EQ(m_clicks, each.clicks) << each.what;
        EXPECT_FALSE(m_press.isDown()) << each.what;
        QTest::qWait(1);
    }
}

// As on a card: a list takes the mouse over as soon as that moves far enough, but from no button.
TEST_F(PressTest, pulled_out_of_a_list_that_scrolls_and_brought_back_it_is_pressed) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nFlickable { width: 200; height: 200; contentHeight: 900 }",
                      {});
    const std::unique_ptr<QObject> made(component.create());
    auto *list = qobject_cast<QQuickItem *>(made.get());
    ASSERT_NE(list, nullptr) << component.errorString().toStdString();
    list->setParentItem(m_window.contentItem());
    m_press.setParentItem(list->property("contentItem").value<QQuickItem *>());
    m_press.setY(100);
    const QPoint at = inside + QPoint(0, 100);
    QTest::mousePress(&m_window, Qt::LeftButton, {}, at);
    for (int y = 0; y <= 60; y += 10) {
        QTest::mouseMove(&m_window, at - QPoint(0, y), 10);
    }
    EXPECT_EQ(list->property("contentY").toDouble(), 0);
    EXPECT_FALSE(m_press.isDown());
    QTest::mouseMove(&m_window, at, 10);
    EXPECT_TRUE(m_press.isDown());
    up(at);
    EXPECT_EQ(m_clicks, 1);
    m_press.setParentItem(m_window.contentItem());
}

} // namespace
} // namespace vorle
