#include "platform/linux/AutostartItem.h"

#include "tests/support/Files.h"
#include "tests/support/HostileTexts.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace vorle {
namespace {

using LoginState = LoginItem::State;

class AutostartTest : public testing::Test {
protected:
    QString path(const QString &name) const { return folder.filePath(name); }
    AutostartTest() { test::writeProgram(program(), "exit 0\n"); }
    QString program() const { return path(QStringLiteral("vorle")); }
    AutostartItem item(const QStringList &command) const {
        return AutostartItem({path(QStringLiteral("config/autostart")), command});
    }
    AutostartItem item() const { return item({program(), QStringLiteral("--hidden")}); }
    static LoginState state(AutostartItem &login) { return test::waitFor(login.state()); }
    static std::optional<QString> set(AutostartItem &login, bool on) {
        return test::waitFor(login.set(on));
    }
    QByteArray entry() const { return test::readFile(item().file()); }

    QTemporaryDir folder;
};

TEST_F(AutostartTest, the_switch_is_what_the_folder_says_and_done_twice_is_done_once) {
    AutostartItem login = item();
    EXPECT_EQ(state(login), LoginState::Off);
    EXPECT_EQ(set(login, false), std::nullopt);
    EXPECT_EQ(set(login, true), std::nullopt);
    EXPECT_EQ(state(login), LoginState::On);
    const QByteArray written = entry();
    const QByteArray exec = '"' + program().toUtf8() + "\" \"--hidden\"";
    EXPECT_TRUE(written.contains("\nExec=" + exec + '\n')) << written.constData();
    EXPECT_EQ(set(login, true), std::nullopt);
    EXPECT_EQ(entry(), written);
    QFile::remove(login.file()); // by hand
    EXPECT_EQ(state(login), LoginState::Off);
    const QByteArray main = "[Desktop Entry]\nType=Application\n";
    const QByteArray begin = main + "Exec=" + program().toUtf8() + " %u\n";
    const QByteArray shell = R"("/bin/sh" "-c" "exec \\"\\$0\\" \\"\\$@\\"" )";
    const std::pair<QByteArray, LoginState> others[] = {
        {begin, LoginState::On},
        {begin + "Hidden=true\n", LoginState::Off},
        {begin + "X-GNOME-Autostart-enabled=false\n", LoginState::Off},
        {begin + "[Other]\nHidden=true\n", LoginState::On},
        {main + "Exec=sh -c true\n", LoginState::On},
        {main + "Exec=" + shell + exec + '\n', LoginState::On},
        // The program is not there any more.
        {main + "Exec=" + program().toUtf8() + "-0.9\n", LoginState::Astray},
        {main + "Exec=\"/opt/a b/vorle\" --hidden\n", LoginState::Astray},
        {main + "Exec=vorle-of-another-day\n", LoginState::Astray},
        {main + "Exec=/etc\n", LoginState::Astray},
        {main + "Exec=" + shell + "\"/opt/a=b/vorle\"\n", LoginState::Astray},
        {main + "Exec=\"\n", LoginState::Astray},
        {begin + "TryExec=/opt/vorle\n", LoginState::Astray},
        {"[Desktop Entry]\n", LoginState::Off},
        {QByteArray(100'000, '\0'), LoginState::Off},
    };
    for (const auto &[bytes, state] : others) {
        test::writeFile(login.file(), bytes);
        EXPECT_EQ(AutostartTest::state(login), state) << bytes.left(200).constData();
        EXPECT_EQ(login.remedy(state).isEmpty(), state != LoginState::Astray);
        EXPECT_EQ(set(login, true), std::nullopt);
        EXPECT_EQ(AutostartTest::state(login), LoginState::On);
        EXPECT_EQ(entry(), written);
    }
    // A pipe in its place, which nobody writes to.
    QFile::remove(login.file());
    ASSERT_EQ(::mkfifo(QFile::encodeName(login.file()).constData(), 0600), 0);
    EXPECT_EQ(state(login), LoginState::Off);
    EXPECT_EQ(set(login, true), std::nullopt);
    EXPECT_EQ(entry(), written);
    EXPECT_EQ(set(login, false), std::nullopt);
    EXPECT_FALSE(QFile::exists(login.file()));
}

TEST_F(AutostartTest, what_the_system_refuses_is_told_and_changes_nothing) {
    test::writeFile(path(QStringLiteral("config")), "a file where the folder would be");
    AutostartItem login = item();
    EXPECT_TRUE(set(login, true).has_value());
    EXPECT_EQ(state(login), LoginState::Off);
}

/// GLib starts the entry, as desktops do: the program and its argument come through as they are.
TEST_F(AutostartTest, any_path_and_argument_reach_the_program_as_they_are) {
    QStringList names{
        QStringLiteral("a b"),      QStringLiteral("a\"b"),
        QStringLiteral("a'b"),      QStringLiteral("a`id`"),
        QStringLiteral("$HOME"),    QStringLiteral("$(id)"),
        QStringLiteral("a\\b"),     QStringLiteral("%f%u%%"),
        QStringLiteral("-rf"),      QStringLiteral("a;b&c|d"),
        QStringLiteral("~"),        QStringLiteral("a\tb"),
        QStringLiteral("été 日本"), QStringLiteral("a\nb"),
        QStringLiteral("a\\nb"),    QStringLiteral("[Desktop Entry]\nExec=/bin/false"),
        QStringLiteral("a=b")};
    for (const QString &text : test::hostileTexts()) {
        names += text;
    }
    names.resize(210);
    const QString out = path(QStringLiteral("out"));
    for (const QString &name : std::as_const(names)) {
        // What a folder's name can be.
        QByteArray bytes = name.toUtf8().left(200);
        const QString kept = QString::fromUtf8(bytes).remove(QChar::ReplacementCharacter);
        const QString program = path(kept) + QStringLiteral("/programme");
        test::writeProgram(program, "printf '%s|%s' \"$0\" \"$1\" > '" + out.toUtf8() + "'\n");
        QFile::remove(out);
        AutostartItem login = item({program, kept});
        ASSERT_EQ(set(login, true), std::nullopt);
        EXPECT_EQ(state(login), LoginState::On) << entry().constData();
        QProcess gio;
        gio.start(QStringLiteral("gio"), {QStringLiteral("launch"), login.file()});
        ASSERT_TRUE(gio.waitForFinished());
        const QByteArray wanted = (program + u'|' + kept).toUtf8();
        test::spinUntil([&] { return test::readFile(out).size() >= wanted.size(); }); // it runs on
        EXPECT_EQ(test::readFile(out), wanted) << entry().constData();
    }
}

} // namespace
} // namespace vorle
