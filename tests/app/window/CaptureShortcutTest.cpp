// The combination that opens the quick capture: recorded by keys, registered, and told where it is
// shown.

#include "app/window/desktop/CaptureShortcut.h"

#include "tests/app/window/OpenWindow.h"

namespace vorle {
namespace {

using State = GlobalHotKey::State;

class CaptureShortcutTest : public test::OpenWindow {
protected:
    CaptureShortcut &shortcut() { return *shell().screens()->captureShortcut(); }
    const Shortcut &kept() { return m_app->preferences().settings().captureShortcut; }
    QString inSheet() {
        const KeyRow row = shell().keyboard()->groups()[0].value<KeyGroup>().rows[0];
        return row.label.startsWith(QStringLiteral("Ajouter un sujet, depuis")) ? row.keys
                                                                                : QString();
    }
};

TEST_F(CaptureShortcutTest, is_recorded_by_one_accepted_press_and_by_nothing_else) {
    fill();
    open();
    const auto before = m_globalHotKey.asked.size();
    shortcut().record();
    EXPECT_EQ(m_globalHotKey.asked.last(), std::nullopt) << "else it could not be typed again";
    for (const auto &[key, modifiers] :
         {std::pair<Qt::Key, Qt::KeyboardModifiers>{Qt::Key_X, Qt::NoModifier},
          {Qt::Key_A, Qt::ShiftModifier},
          {Qt::Key_Backspace, Qt::ShiftModifier}}) {
        press(key, modifiers);
        EXPECT_TRUE(shortcut().recording());
        EXPECT_TRUE(shortcut().isTroubled());
        EXPECT_EQ(kept(), Shortcut());
    }
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Inbox) << "the key went through";
    press(Qt::Key_K, Qt::ControlModifier); // one of the window's own
    EXPECT_FALSE(shortcut().recording());
    EXPECT_EQ(kept(), (Shortcut{0x28, 0x1000, QStringLiteral("k")}));
    EXPECT_EQ(inSheet(), QStringLiteral("Ctrl+K"));

    shortcut().record();
    press(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(kept(), (Shortcut{0x00, 0x1200, QStringLiteral("a")}));
    shortcut().record();
    press(Qt::Key_Escape);
    EXPECT_FALSE(shortcut().recording());
    EXPECT_EQ(kept(), (Shortcut{0x00, 0x1200, QStringLiteral("a")}));
    EXPECT_EQ(m_globalHotKey.asked.last(), (KeyCombination{0x00, 0x1200, QStringLiteral("a")}));

    shortcut().record();
    press(Qt::Key_Backspace);
    EXPECT_TRUE(kept().isNone());
    EXPECT_EQ(shortcut().text(), QStringLiteral("Aucun"));
    EXPECT_EQ(inSheet(), QString());
    EXPECT_GT(m_globalHotKey.asked.size(), before);
    press(Qt::Key_X); // and the keyboard is the window's again
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Dismissed);
}

TEST_F(CaptureShortcutTest, its_row_in_the_settings_is_worked_by_keys_alone) {
    open();
    press(Qt::Key_Comma, Qt::ControlModifier);
    SettingsPages &pages = *shell().screens()->settingsPages();
    pages.setPage(static_cast<int>(pages.pages().indexOf(QStringLiteral("Capture"))));
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    EXPECT_TRUE(shortcut().recording());
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Tape ton raccourci…")));
    press(Qt::Key_Down); // no step to another row
    EXPECT_TRUE(shortcut().recording());
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(kept(), (Shortcut{0x7D, 0x800, QStringLiteral("↓")}));
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Alt+↓")));
    press(Qt::Key_Return); // the keyboard came back to the button
    EXPECT_TRUE(shortcut().recording());
    press(Qt::Key_Escape);
    EXPECT_FALSE(shortcut().recording());
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Capture"))) << "the panel went with it";
    press(Qt::Key_Return);
    press(Qt::Key_Tab);
    EXPECT_TRUE(shortcut().recording());
    press(Qt::Key_Escape);
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    EXPECT_FALSE(shortcut().recording());
    EXPECT_EQ(m_globalHotKey.asked.last(), (KeyCombination{0x7D, 0x800, QStringLiteral("↓")}));
}

TEST_F(CaptureShortcutTest, what_the_system_makes_of_it_is_told_and_the_sheet_shows_what_works) {
    open();
    EXPECT_EQ(inSheet(), QStringLiteral("Ctrl+Alt+Espace"));
    EXPECT_FALSE(shortcut().isTroubled());
    const std::pair<State, const char *> cases[] = {
        {State::Taken, "Une autre app utilise déjà Ctrl+Alt+Espace."},
        {State::Unavailable, "Ton système ne donne pas ce raccourci à vorle."},
        {State::Asked, "J’attends la réponse de ton bureau."}};
    for (const auto &[state, help] : cases) {
        m_globalHotKey.turn(state);
        EXPECT_EQ(shortcut().help(), QString::fromUtf8(help));
        EXPECT_EQ(shortcut().isTroubled(), state != State::Asked);
        EXPECT_EQ(inSheet(), QString());
    }
    m_globalHotKey.bound = QStringLiteral("Ctrl+Alt+V");
    m_globalHotKey.turn(State::Registered);
    EXPECT_EQ(inSheet(), QStringLiteral("Ctrl+Alt+V"));
    EXPECT_EQ(shortcut().help(), QStringLiteral("Ton bureau l’a réglé sur Ctrl+Alt+V."));
}

} // namespace
} // namespace vorle
