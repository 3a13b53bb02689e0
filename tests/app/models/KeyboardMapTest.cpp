#include "app/models/KeyboardMap.h"
#include "app/models/ShortcutText.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::text;

TEST(KeyboardMap, draws_the_sheet) {
    const auto row = [](const char *keys, const char *label) {
        return KeyRow{text(keys), text(label)};
    };
    const QList<KeyGroup> expected{
        {text("Partout"),
         {row("⌃⌥ Espace", "Ajouter un sujet, depuis n’importe quelle app"),
          row("⌘K", "Rechercher"), row("⌘N", "Ajouter un sujet"),
          row("⌘1 … ⌘6", "Aller à une rubrique"), row("← →", "Passer du menu au contenu"),
          row("⌘R", "Fouiller maintenant"), row("⌘Z", "Annuler le dernier tri"),
          row("⌘,", "Réglages"), row("?  ou  ⌘/", "Ces raccourcis")}},
        {text("À trier"),
         {row("↑ ↓", "Sujet précédent, suivant"), row("G", "Garder au programme"),
          row("L", "Plus tard (réserve)"), row("X", "Pas pour moi"),
          row("Espace", "Agrandir la carte pour lire"), row("Échap", "Réduire la carte")}},
        {text("Programme"),
         {row("⌘↩", "Lancer dans Claude Code ou approfondir avec Claude"), row("D", "Fait"),
          row("R", "Reporter"), row("⌫", "Retirer")}},
        {text("Réserve et Bibliothèque"),
         {row("G", "Garder au programme"), row("T", "Remettre à trier"),
          row("1 2 3", "Bof, Utile, Pépite")}}};
    EXPECT_EQ(KeyboardMap::sheet(AgentKind::Claude, KeySpelling::Glyphs), expected);

    const auto words = KeyboardMap::sheet(AgentKind::Codex, KeySpelling::Words);
    EXPECT_EQ(words[0].rows[0].keys, text("Ctrl+Alt+Espace"));
    EXPECT_EQ(words[0].rows[3].keys, text("Ctrl+1 … Ctrl+6"));
    EXPECT_EQ(words[0].rows[8].keys, text("?  ou  Ctrl+/"));
    EXPECT_EQ(words[2].rows[0].label, text("Lancer dans Codex ou approfondir avec ChatGPT"));
    KeyboardMap told(AgentKind::Claude, KeySpelling::Glyphs);
    const auto first = [&told] { return told.groups()[0].value<KeyGroup>().rows[0].keys; };
    EXPECT_EQ(first(), text("⌃⌥ Espace"));
    told.setCaptureKeys(text("⌃⇧A"));
    EXPECT_EQ(first(), text("⌃⇧A"));
    told.setCaptureKeys({});
    EXPECT_EQ(first(), text("⌘K")) << "a combination that does not work is no shortcut";

    const KeyboardMap linux(AgentKind::Claude, KeySpelling::Words);
    EXPECT_EQ(linux.keys(KeyboardMap::Redo), text("Maj+Ctrl+Z"));
    EXPECT_EQ(linux.inboxHint(),
              text("↑ ↓ pour naviguer · Espace pour agrandir · Ctrl+Z pour annuler"));
}

TEST(KeyboardMap, writes_a_combination_as_the_sheet_does) {
    const struct {
        Shortcut shortcut;
        const char *glyphs;
        const char *words;
    } cases[] = {
        {{}, "⌃⌥ Espace", "Ctrl+Alt+Espace"},
        {{0, 0x1000 | 0x200, text("a")}, "⌃⇧A", "Ctrl+Maj+A"},
        {{49, 0x100, text(" ")}, "⌘ Espace", "Super+Espace"},
        {{19, 0x1B00, text("é")}, "⌃⌥⇧⌘É", "Ctrl+Alt+Maj+Super+É"},
        {{96, 0x800, text("F5")}, "⌥F5", "Alt+F5"},
        {Shortcut::none(), "", ""},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(shortcutText(each.shortcut, KeySpelling::Glyphs), text(each.glyphs));
        EXPECT_EQ(shortcutText(each.shortcut, KeySpelling::Words), text(each.words));
    }
    // What somebody wrote into the settings by hand turns nothing round.
    EXPECT_EQ(shortcutText({0, 0x1000, text("\u202Ea\n")}, KeySpelling::Glyphs), text("⌃A"));
}

TEST(KeyboardMap, dispatches_what_the_sheet_says) {
    using Map = KeyboardMap;
    const Map map(AgentKind::Claude, KeySpelling::Glyphs);
    struct Case {
        Section section;
        int key;
        int modifiers;
        Map::Action action;
    };
    constexpr int command = Qt::ControlModifier;
    constexpr int shift = Qt::ShiftModifier;
    const Case cases[] = {
        {Section::Inbox, Qt::Key_G, 0, Map::Keep},
        {Section::Inbox, Qt::Key_L, 0, Map::Later},
        {Section::Inbox, Qt::Key_X, 0, Map::Dismiss},
        {Section::Inbox, Qt::Key_D, 0, Map::NoAction},
        {Section::Inbox, Qt::Key_1, 0, Map::NoAction},
        {Section::Program, Qt::Key_G, 0, Map::NoAction},
        {Section::Program, Qt::Key_D, 0, Map::Done},
        {Section::Program, Qt::Key_R, 0, Map::Postpone},
        {Section::Program, Qt::Key_R, command, Map::RunNow},
        {Section::Program, Qt::Key_Backspace, 0, Map::Remove},
        {Section::Program, Qt::Key_Return, command, Map::FirstStep},
        {Section::Program, Qt::Key_Enter, command | Qt::KeypadModifier, Map::FirstStep},
        {Section::Program, Qt::Key_Return, 0, Map::NoAction},
        {Section::Reserve, Qt::Key_O, 0, Map::OpenSource},
        {Section::Inbox, Qt::Key_C, command, Map::CopyLink},
        {Section::Inbox, Qt::Key_J, 0, Map::Next},
        {Section::Library, Qt::Key_K, 0, Map::Previous},
        {Section::Report, Qt::Key_J, 0, Map::NoAction},
        {Section::Reserve, Qt::Key_G, 0, Map::Keep},
        {Section::Library, Qt::Key_T, 0, Map::BackToTriage},
        {Section::Library, Qt::Key_X, 0, Map::NoAction},
        {Section::Library, Qt::Key_3, 0, Map::WorthGem},
        {Section::Library, Qt::Key_3, Qt::KeypadModifier, Map::WorthGem},
        // A French keyboard: digits with Shift, other signs without.
        {Section::Library, Qt::Key_2, shift, Map::WorthUseful},
        {Section::Library, Qt::Key_Eacute, 0, Map::WorthUseful},
        {Section::Library, Qt::Key_Ampersand, shift, Map::NoAction},
        {Section::Library, Qt::Key_Minus, Qt::KeypadModifier, Map::NoAction},
        {Section::Report, Qt::Key_Ampersand, command, Map::GoInbox},
        {Section::Inbox, Qt::Key_6, command, Map::GoReport},
        {Section::Inbox, Qt::Key_Question, shift, Map::ShowShortcuts},
        {Section::Inbox, Qt::Key_Slash, command | shift, Map::ShowShortcuts},
        {Section::Inbox, Qt::Key_Z, command, Map::Undo},
        {Section::Inbox, Qt::Key_Z, command | shift, Map::Redo},
        {Section::Inbox, Qt::Key_Comma, command, Map::OpenSettings},
        {Section::Territory, Qt::Key_K, command, Map::Search},
        {Section::Territory, Qt::Key_Left, 0, Map::GoMenu},
        {Section::Territory, Qt::Key_Down, 0, Map::Next},
        {Section::Report, Qt::Key_Up, 0, Map::Previous},
        {Section::Territory, Qt::Key_Down, command, Map::NoAction},
        {Section::Report, Qt::Key_Space, 0, Map::NoAction},
        {Section::Library, Qt::Key_Down, command, Map::NextTopic},
        {Section::Library, Qt::Key_Down, Qt::KeypadModifier, Map::Next},
        {Section::Reserve, Qt::Key_Space, 0, Map::ToggleCard},
        {Section::Inbox, Qt::Key_Escape, 0, Map::CloseCard},
        {Section::Inbox, Qt::Key_G, Qt::AltModifier, Map::NoAction},
        // The size of type, wherever the signs stand: "+" needs Shift, or its key alone is meant.
        {Section::Report, Qt::Key_Plus, command | shift, Map::LargerText},
        {Section::Inbox, Qt::Key_Plus, command, Map::LargerText},
        {Section::Inbox, Qt::Key_Plus, command | Qt::KeypadModifier, Map::LargerText},
        {Section::Inbox, Qt::Key_Equal, command, Map::LargerText},
        {Section::Inbox, Qt::Key_Minus, command, Map::SmallerText},
        {Section::Inbox, Qt::Key_Minus, command | Qt::KeypadModifier, Map::SmallerText},
        {Section::Inbox, Qt::Key_ParenRight, command, Map::SmallerText},
        {Section::Inbox, Qt::Key_0, command | shift, Map::UsualText},
        {Section::Inbox, Qt::Key_Agrave, command, Map::UsualText},
        {Section::Inbox, Qt::Key_0, command | Qt::KeypadModifier, Map::UsualText},
        {Section::Inbox, Qt::Key_Plus, shift, Map::NoAction},
    };
    for (const Case &each : cases) {
        EXPECT_EQ(map.action(each.section, each.key, each.modifiers, false), each.action)
            << static_cast<int>(each.section) << " " << each.key << " " << each.modifiers;
    }
    // On a PC's French keyboard the 6 shares its key with a minus sign.
    constexpr quint32 placeOfSix = 15;
    EXPECT_EQ(map.action(Section::Inbox, Qt::Key_Minus, command, false, placeOfSix), Map::GoReport);
    EXPECT_EQ(map.target(Map::GoLibrary), Section::Library);
    EXPECT_FALSE(map.repeats(Map::Keep));
    EXPECT_FALSE(map.repeats(Map::Undo));
    EXPECT_TRUE(map.repeats(Map::Next));
}

TEST(KeyboardMap, knows_the_digits_of_every_row_they_are_typed_on) {
    const KeyboardMap map(AgentKind::Claude, KeySpelling::Words);
    constexpr int shift = Qt::ShiftModifier;
    const std::tuple<int, int, int> cases[] = {
        {Qt::Key_0, 0, 0},
        {Qt::Key_9, shift, 9},
        {Qt::Key_7, Qt::KeypadModifier, 7},
        {Qt::Key_Agrave, 0, 0},
        {Qt::Key_Minus, 0, 6},
        {Qt::Key_section, 0, 6}, // a Mac's
        {Qt::Key_Underscore, 0, 8},
        {Qt::Key_Exclam, 0, 8}, // a Mac's
        {Qt::Key_Ccedilla, 0, 9},
        {Qt::Key_Ampersand, shift, -1}, // the 7 of an American keyboard
        {Qt::Key_Minus, Qt::KeypadModifier, -1},
        {Qt::Key_1, Qt::ControlModifier, -1},
        {Qt::Key_Eacute, Qt::AltModifier, -1},
        {Qt::Key_G, 0, -1},
    };
    for (const auto &[key, modifiers, digit] : cases) {
        EXPECT_EQ(map.digit(key, modifiers), digit) << key << " " << modifiers;
    }
}

TEST(KeyboardMap, leaves_a_text_field_its_keys) {
    using Map = KeyboardMap;
    const Map map(AgentKind::Claude, KeySpelling::Glyphs);
    constexpr int command = Qt::ControlModifier;
    const std::tuple<int, int, Map::Action> cases[] = {
        {Qt::Key_G, 0, Map::NoAction},
        {Qt::Key_Question, Qt::ShiftModifier, Map::NoAction},
        {Qt::Key_Left, 0, Map::NoAction},
        {Qt::Key_Escape, 0, Map::NoAction},
        {Qt::Key_Down, command, Map::NoAction},
        {Qt::Key_Z, command, Map::NoAction},
        {Qt::Key_Z, command | Qt::ShiftModifier, Map::NoAction},
        {Qt::Key_C, command, Map::NoAction},
        {Qt::Key_K, command, Map::Search},
        {Qt::Key_2, command, Map::GoProgram},
        {Qt::Key_Slash, command, Map::ShowShortcuts},
    };
    for (const auto &[key, modifiers, action] : cases) {
        EXPECT_EQ(map.action(Section::Inbox, key, modifiers, true), action) << key;
    }
}

} // namespace
} // namespace vorle
