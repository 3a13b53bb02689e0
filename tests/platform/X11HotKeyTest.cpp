// The real adapter on an X server of its own, with keys that a program types there.

#include "platform/linux/X11HotKey.h"

#include "tests/support/Wait.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using State = GlobalHotKey::State;

QString asText(const char *text) { return QString::fromUtf8(text); }

constexpr int controlOption = KeyCombination::control | KeyCombination::option;

class X11HotKeyTest : public testing::Test {
protected:
    X11HotKeyTest() {
        m_server.start(asText("Xvfb"),
                       {asText("-displayfd"), asText("1"), asText("-nolisten"), asText("tcp"),
                        asText("-screen"), asText("0"), asText("320x240x24"), asText("-noreset")});
        QByteArray number;
        test::spinUntil([&] {
            number += m_server.readAllStandardOutput();
            return number.endsWith('\n') || m_server.state() == QProcess::NotRunning;
        });
        m_display = ':' + number.trimmed();
    }
    ~X11HotKeyTest() override {
        m_server.kill();
        m_server.waitForFinished();
    }
    void run(const char *program, const QStringList &arguments) {
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(asText("DISPLAY"), QString::fromLatin1(m_display));
        process.setProcessEnvironment(environment);
        process.start(asText(program), arguments);
        ASSERT_TRUE(process.waitForFinished()) << program;
        ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    }
    void type(const char *keys) { run("xdotool", {asText("key"), asText(keys)}); }

    /// How often the key was heard by the time one that comes after it was.
    int heard(const char *keys) {
        const int before = m_pressed;
        const int marks = m_marks;
        type(keys);
        type("ctrl+F9");
        test::spinUntil([&] { return m_marks > marks; });
        return m_pressed - before;
    }
    void open(const KeyCombination &combination) {
        m_hotKey = std::make_unique<X11HotKey>(m_display);
        m_hotKey->follow([this] { ++m_pressed; }, {});
        m_hotKey->replace(combination);
        m_mark = std::make_unique<X11HotKey>(m_display);
        m_mark->follow([this] { ++m_marks; }, {});
        m_mark->replace(KeyCombination{101, KeyCombination::control, asText("F9")});
        ASSERT_EQ(m_hotKey->state(), State::Registered);
        ASSERT_EQ(m_mark->state(), State::Registered);
    }

    QProcess m_server;
    QByteArray m_display;
    std::unique_ptr<X11HotKey> m_hotKey;
    std::unique_ptr<X11HotKey> m_mark; // tells that what was typed before it has come through
    int m_pressed = 0;
    int m_marks = 0;
    const KeyCombination m_space{49, controlOption, asText(" ")};
};

TEST_F(X11HotKeyTest, is_heard_whatever_locks_are_on_once_a_press_and_with_its_modifiers_alone) {
    open(m_space);
    EXPECT_EQ(heard("ctrl+alt+space"), 1);
    for (const char *lock : {"Num_Lock", "Caps_Lock", "Num_Lock"}) {
        type(lock);
        EXPECT_EQ(heard("ctrl+alt+space"), 1) << lock;
    }
    type("Caps_Lock");
    for (const char *other : {"space", "ctrl+space", "ctrl+alt+shift+space", "ctrl+alt+a"}) {
        EXPECT_EQ(heard(other), 0) << other;
    }
    // Held until it has repeated itself.
    const int before = m_pressed;
    run("xdotool",
        {asText("keydown"), asText("ctrl"), asText("keydown"), asText("alt"), asText("keydown"),
         asText("space"), asText("sleep"), asText("1"), asText("keyup"), asText("space"),
         asText("keyup"), asText("alt"), asText("keyup"), asText("ctrl")});
    EXPECT_EQ(heard("a"), m_pressed - before);
    EXPECT_EQ(m_pressed - before, 1);
}

TEST_F(X11HotKeyTest, one_that_another_program_has_is_taken_and_only_one_is_held_at_a_time) {
    open(m_space);
    X11HotKey other(m_display);
    other.replace(m_space);
    EXPECT_EQ(other.state(), State::Taken);
    EXPECT_EQ(heard("ctrl+alt+space"), 1) << "trying for it took it away";

    m_hotKey->replace(KeyCombination{0, KeyCombination::command, asText("a")});
    m_hotKey->replace(KeyCombination{11, controlOption, asText("b")});
    EXPECT_EQ(heard("ctrl+alt+b"), 1);
    EXPECT_EQ(heard("super+a"), 0);
    for (const KeyCombination &given :
         {m_space, KeyCombination{0, KeyCombination::command, asText("a")}}) {
        other.replace(given);
        EXPECT_EQ(other.state(), State::Registered);
    }
    m_hotKey->replace(std::nullopt);
    EXPECT_EQ(heard("ctrl+alt+b"), 0);
}

TEST_F(X11HotKeyTest, follows_the_letter_where_another_layout_has_it) {
    open({0, controlOption, asText("a")});
    EXPECT_EQ(heard("ctrl+alt+a"), 1);
    run("setxkbmap", {asText("fr")});
    test::spinUntil([&] { return heard("ctrl+alt+a") == 1; });
    EXPECT_EQ(heard("ctrl+alt+q"), 0) << "where the letter was before";
    // A sign that the layout does not have: the place where it was recorded.
    m_hotKey->replace(KeyCombination{11, controlOption, asText("ж")});
    EXPECT_EQ(heard("ctrl+alt+b"), 1);
}

TEST_F(X11HotKeyTest, without_a_server_there_is_none) {
    X11HotKey nowhere(":477");
    nowhere.replace(m_space);
    EXPECT_EQ(nowhere.state(), State::Unavailable);
    open(m_space);
    m_server.kill();
    test::spinUntil([&] { return m_hotKey->state() == State::Unavailable; });
    m_hotKey->replace(m_space);
    EXPECT_EQ(m_hotKey->state(), State::Unavailable);
}

} // namespace
} // namespace vorle
