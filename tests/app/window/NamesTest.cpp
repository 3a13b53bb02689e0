// What assistive technology is told of what can be acted on.

#include "tests/app/window/OpenWindow.h"

#include <QAccessible>

#include <set>

namespace vorle {
namespace {

class NamesTest : public test::OpenWindow {};

/// What assistive technology reads: every control that can be acted on has a name.
void expectNamed(QAccessibleInterface *item, std::multiset<QAccessible::Role> &roles,
                 const QString &path) {
    if (item == nullptr || item->state().invisible) {
        return;
    }
    static const std::set acting{QAccessible::PushButton,  QAccessible::PageTab,
                                 QAccessible::ListItem,    QAccessible::EditableText,
                                 QAccessible::Link,        QAccessible::Heading,
                                 QAccessible::RadioButton, QAccessible::Dialog};
    const QString name = item->text(QAccessible::Name);
    roles.insert(item->role());
    if (acting.contains(item->role())) {
        EXPECT_FALSE(name.trimmed().isEmpty())
            << "role " << item->role() << " under " << path.toStdString();
    }
    for (int i = 0; i < item->childCount(); ++i) {
        expectNamed(item->child(i), roles, path + QStringLiteral(" > ") + name);
    }
}

TEST_F(NamesTest, everything_that_can_be_acted_on_has_a_name_and_a_role) {
    fill();
    open();
    QAccessible::setActive(true);
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6}) {
        press(key, Qt::ControlModifier);
        std::multiset<QAccessible::Role> roles;
        expectNamed(QAccessible::queryAccessibleInterface(&window()), roles, QString());
        EXPECT_EQ(roles.count(QAccessible::PageTab), 6U) << key;
        EXPECT_GE(roles.count(QAccessible::PushButton), 2U) << key;
        EXPECT_GE(roles.count(QAccessible::Heading), 1U) << key;
    }
    for (const auto &[key, modifiers] :
         {std::pair{Qt::Key_N, Qt::ControlModifier}, std::pair{Qt::Key_Comma, Qt::ControlModifier},
          std::pair{Qt::Key_K, Qt::ControlModifier}}) {
        press(key, modifiers);
        std::multiset<QAccessible::Role> roles;
        expectNamed(QAccessible::queryAccessibleInterface(&window()), roles, QString());
        EXPECT_EQ(roles.count(QAccessible::Dialog), 1U) << key;
        press(Qt::Key_Escape);
    }
}

TEST_F(NamesTest, the_small_panel_tells_what_waits_and_leads_in_by_keyboard_alone) {
    fill();
    open();
    QAccessible::setActive(true);
    const auto titled = [](QStringView title) {
        for (QWindow *each : QGuiApplication::topLevelWindows()) {
            if (each->title() == title) {
                return each;
            }
        }
        return static_cast<QWindow *>(nullptr);
    };
    const auto panel = [&] { return titled(u"vorle, en bref"); };
    EXPECT_EQ(panel(), nullptr);
    const auto show = [&] {
        m_main->toggleStatus({700, 0, 24, 24});
        ASSERT_NE(panel(), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(panel()));
    };
    show();
    std::multiset<QAccessible::Role> roles;
    expectNamed(QAccessible::queryAccessibleInterface(panel()), roles, QString());
    EXPECT_EQ(roles.count(QAccessible::PushButton), 4U);
    QTest::keyClick(panel(), Qt::Key_Escape);
    EXPECT_FALSE(panel()->isVisible());
    m_main->toggleStatus({700, 0, 24, 24});
    EXPECT_FALSE(panel()->isVisible()) << "the click that put it away does not bring it back";

    // Another click does, as soon as it is one of its own.
    ASSERT_TRUE(QTest::qWaitFor([&] {
        if (!panel()->isVisible()) {
            m_main->toggleStatus({700, 0, 24, 24});
        }
        return panel()->isVisible();
    }));
    ASSERT_TRUE(QTest::qWaitForWindowActive(panel()));
    QTest::keyClick(panel(), Qt::Key_Tab);
    QTest::keyClick(panel(), Qt::Key_Return); // "Ajouter un sujet"
    EXPECT_FALSE(panel()->isVisible());
    QWindow *const capture = titled(u"Ajouter un sujet");
    ASSERT_NE(capture, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(capture));
    roles.clear();
    expectNamed(QAccessible::queryAccessibleInterface(capture), roles, QString());
    EXPECT_EQ(roles.count(QAccessible::EditableText), 2U);
}

} // namespace
} // namespace vorle
