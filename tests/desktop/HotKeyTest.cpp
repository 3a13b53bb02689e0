#include "desktop/HotKey.h"

#include "platform/fakes/FakeGlobalHotKey.h"
#include "tests/core/Samples.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using State = GlobalHotKey::State;

class HotKeyTest : public testing::Test {
protected:
    QTemporaryDir m_folder;
    Preferences m_preferences{
        std::make_unique<SettingsFile>(m_folder.filePath(QStringLiteral("settings.json")))};
    test::FakeGlobalHotKey m_system;
};

TEST_F(HotKeyTest, asks_for_what_the_settings_say_gives_it_back_and_asks_again) {
    const Shortcut letter{0, 0x100, QStringLiteral("a")};
    int pressed = 0;
    {
        HotKey hotKey(m_preferences, m_system);
        QObject::connect(&hotKey, &HotKey::pressed, &hotKey, [&] { ++pressed; });
        EXPECT_EQ(m_system.asked.last(), (KeyCombination{49, 0x1800, QStringLiteral(" ")}));
        m_system.press();
        m_preferences.change(&Settings::weeklyMinutes, 90);
        EXPECT_EQ(m_system.asked.size(), 1) << "another setting was changed";
        m_preferences.change(&Settings::captureShortcut, letter);
        EXPECT_EQ(m_system.asked.last(), (KeyCombination{0, 0x100, QStringLiteral("a")}));

        hotKey.pause();
        EXPECT_EQ(m_system.asked.last(), std::nullopt);
        m_preferences.change(&Settings::captureShortcut, Shortcut{});
        EXPECT_EQ(m_system.asked.last(), std::nullopt) << "it is still being typed";
        m_system.answer = State::Taken;
        hotKey.resume();
        EXPECT_EQ(hotKey.state(), State::Taken);
        m_system.press();
        m_system.answer = State::Registered;
        hotKey.look();
        EXPECT_EQ(hotKey.state(), State::Registered);
        m_system.turn(State::Unavailable); // the desktop took it back
        hotKey.look();
        EXPECT_EQ(hotKey.state(), State::Registered);
        const auto asked = m_system.asked.size();
        hotKey.look();
        EXPECT_EQ(m_system.asked.size(), asked) << "it has it already";
        m_preferences.change(&Settings::captureShortcut, Shortcut::none());
        EXPECT_EQ(hotKey.state(), State::None);
        m_preferences.change(&Settings::captureShortcut, letter);
    }
    EXPECT_EQ(m_system.asked.last(), std::nullopt) << "it was left to nobody";
    EXPECT_EQ(pressed, 1);
}

} // namespace
} // namespace vorle
