// Everything that can be done is reached by the keyboard alone, and one sees where it is.

#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <QAccessible>
#include <QMetaEnum>
#include <QSet>

namespace vorle {
namespace {

using test::text;

class KeyboardReachTest : public test::OpenWindow {
protected:
    static QAccessibleInterface *spoken(const QQuickItem &item) {
        return QAccessible::queryAccessibleInterface(const_cast<QQuickItem *>(&item));
    }
    /// Of a choice, one is a stop: whichever is chosen by then.
    static bool isChoiceBeside(const QQuickItem &item, const QQuickItem &other) {
        return item.parentItem() == other.parentItem() && spoken(item) != nullptr &&
               spoken(item)->role() == QAccessible::RadioButton;
    }
    static QString told(const QQuickItem &item) {
        const QAccessibleInterface *interface = spoken(item);
        return text("%1 « %2 »")
            .arg(QString::fromLatin1(item.metaObject()->className()),
                 interface != nullptr ? interface->text(QAccessible::Name) : QString());
    }
    static bool isWithin(const QQuickItem *item, QByteArrayView type) {
        for (; item != nullptr; item = item->parentItem()) {
            if (QByteArrayView(item->metaObject()->className()).startsWith(type)) {
                return true;
            }
        }
        return false;
    }
    /// All that Tab is to come to, and every button of the screens.
    QSet<QQuickItem *> stops() {
        const auto found = shown([](const QQuickItem &item) {
            // What takes a decision back has its own key, and goes by itself.
            return item.isEnabled() && !isWithin(&item, "GhostLine_") &&
                   (item.activeFocusOnTab() || item.inherits("vorle::Press"));
        });
        return {found.cbegin(), found.cend()};
    }
    bool isSeen(const QQuickItem *item) {
        if (item->inherits("QQuickTextInput") || item->inherits("QQuickTextEdit")) {
            return true; // its edge changes, and it has a caret
        }
        const auto rings = shown([&](const QQuickItem &each) {
            return isWithin(&each, "FocusRing_") && each.property("shown").toBool();
        });
        return std::ranges::any_of(rings, [&](const QQuickItem *ring) {
            return item->isAncestorOf(ring) || ring->parentItem()->isAncestorOf(item);
        });
    }
    /// Goes round with Tab.
    void expectReached(const QString &where) {
        QTest::qWait(60);
        QSet<QQuickItem *> left = stops();
        EXPECT_FALSE(left.isEmpty()) << where.toStdString();
        QSet<QQuickItem *> unseen;
        for (int i = 0; i < 160 && !left.isEmpty(); ++i) {
            press(Qt::Key_Tab);
            QQuickItem *has = window().activeFocusItem();
            ASSERT_NE(has, nullptr) << where.toStdString();
            if (left.remove(has) && !isSeen(has)) {
                unseen += has;
            }
            left.removeIf([&](const QQuickItem *item) { return isChoiceBeside(*item, *has); });
        }
        for (const QQuickItem *item : std::as_const(left)) {
            ADD_FAILURE() << where.toStdString() << ": never at " << told(*item).toStdString();
        }
        for (const QQuickItem *item : std::as_const(unseen)) {
            ADD_FAILURE() << where.toStdString() << ": not seen at " << told(*item).toStdString();
        }
    }
};

TEST_F(KeyboardReachTest, tab_comes_to_every_control_of_every_screen_and_shows_where_it_is) {
    fill();
    open();
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6}) {
        press(key, Qt::ControlModifier);
        expectReached(shell().sections()->title());
        press(key, Qt::ControlModifier);
        if (shell().actions()->selection() != nullptr) {
            press(Qt::Key_Space);
            ASSERT_TRUE(enlarged());
            expectReached(text("la page de ") + shell().sections()->title());
            press(Qt::Key_Escape);
        }
    }
}

TEST_F(KeyboardReachTest, tab_goes_round_within_a_panel) {
    fill();
    open();
    const std::initializer_list<std::pair<Qt::Key, const char *>> panels{
        {Qt::Key_K, "la palette"}, {Qt::Key_N, "ajouter"}, {Qt::Key_Comma, "les réglages"}};
    for (const auto &[key, name] : panels) {
        press(key, Qt::ControlModifier);
        expectReached(text(name));
        press(Qt::Key_Escape);
        press(Qt::Key_Escape);
    }
}

TEST_F(KeyboardReachTest, every_action_has_a_key_or_a_name_in_the_palette) {
    fill();
    open();
    const auto actions = QMetaEnum::fromType<KeyboardMap::Action>();
    for (int i = 0; i < actions.keyCount(); ++i) {
        const auto action = static_cast<KeyboardMap::Action>(actions.value(i));
        // An update that waits is told by a line with a button, and found by the other action too.
        if (action == KeyboardMap::NoAction || action == KeyboardMap::ShowUpdate) {
            continue;
        }
        bool keyed = false;
        for (const Section section : {Section::Inbox, Section::Program, Section::Reserve,
                                      Section::Library, Section::Territory, Section::Report}) {
            keyed = keyed || shell().keyboard()->actsIn(action, section);
        }
        const QString label = shell().keyboard()->label(action);
        if (keyed) {
            continue;
        }
        ASSERT_FALSE(label.isEmpty()) << actions.key(i);
        if (shell().commands()->canAct(action)) {
            EXPECT_TRUE(std::ranges::any_of(
                shell().commands()->offers(label),
                [&](const Commands::Offer &offer) { return offer.action == action; }))
                << actions.key(i);
        }
    }
}

} // namespace
} // namespace vorle
