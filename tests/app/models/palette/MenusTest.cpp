#include "app/models/palette/Menus.h"
#include "tests/support/Text.h"

#include <QMetaEnum>
#include <QSet>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::text;
using Map = KeyboardMap;

const Map &keyboard() {
    static const Map map(AgentKind::Codex, KeySpelling::Glyphs);
    return map;
}

TEST(Menus, hold_every_action_once_with_its_key) {
    // These scroll too, and ⌘↑ ⌘↓ move; the update that waits is told where it waits.
    const QSet<Map::Action> elsewhere{Map::NoAction, Map::Previous, Map::Next, Map::ShowUpdate};
    QList<Map::Action> held;
    QStringList keys;
    QStringList titles;
    for (const Menu &menu : menuBar(keyboard())) {
        titles += menu.title;
        EXPECT_FALSE(menu.entries.first().isSeparator() || menu.entries.last().isSeparator());
        for (const MenuEntry &entry : menu.entries) {
            if (entry.isSeparator()) {
                continue;
            }
            EXPECT_FALSE(entry.text.isEmpty()) << entry.action;
            if (entry.action != Map::NoAction) {
                held += entry.action;
            }
            if (!entry.keys.isEmpty()) {
                keys += entry.keys.toString(QKeySequence::PortableText);
            } else if (const QString bare = keyboard().keys(entry.action); !bare.isEmpty()) {
                EXPECT_TRUE(entry.text.endsWith(QStringLiteral(" (%1)").arg(bare)))
                    << entry.text.toStdString();
            }
        }
    }
    EXPECT_EQ(titles.join(u' '), text("vorle Fichier Édition Sujet Présentation Fenêtre Aide"));
    EXPECT_EQ(QSet<QString>(keys.begin(), keys.end()).size(), keys.size())
        << "no combination is taken twice: " << keys.join(u' ').toStdString();
    const auto all = QMetaEnum::fromType<Map::Action>();
    for (int i = 0; i < all.keyCount(); ++i) {
        const auto action = static_cast<Map::Action>(all.value(i));
        EXPECT_EQ(held.count(action), elsewhere.contains(action) ? 0 : 1) << all.key(i);
    }
}

TEST(Menus, take_no_key_that_a_text_field_needs) {
    for (const Menu &menu : menuBar(keyboard())) {
        for (const MenuEntry &entry : menu.entries) {
            EXPECT_TRUE(entry.keys.isEmpty() || (entry.keys[0].keyboardModifiers() &
                                                 (Qt::ControlModifier | Qt::MetaModifier)))
                << entry.text.toStdString();
        }
    }
    const auto textOf = [](Map::Action action) {
        for (const Menu &menu : menuBar(keyboard())) {
            for (const MenuEntry &entry : menu.entries) {
                if (entry.action == action) {
                    return entry.text;
                }
            }
        }
        return QString();
    };
    EXPECT_EQ(textOf(Map::Keep), text("Garder au programme (G)"));
    EXPECT_EQ(textOf(Map::FirstStep), text("Lancer dans Codex ou approfondir avec ChatGPT"));
    EXPECT_EQ(textOf(Map::GoLibrary), text("Bibliothèque"));
    EXPECT_EQ(textOf(Map::Search), text("Rechercher"));
}

} // namespace
} // namespace vorle
