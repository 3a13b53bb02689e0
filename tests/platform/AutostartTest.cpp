#include "platform/linux/AutostartItem.h"

#include "tests/support/Files.h"
#include "tests/support/HostileTexts.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using LoginState = LoginItem::State;

class AutostartTest : public testing::Test {
protected:
    QString path(const QString &name) const { return folder.filePath(name); }
    AutostartItem item(const QStringList &command = {QStringLiteral("/opt/vorle"),
                                                     QStringLiteral("--hidden")}) const {
        return AutostartItem({path(QStringLiteral("config/autostart")), command});
    }
    QByteArray entry() const { return test::readFile(item().file()); }

    QTemporaryDir folder;
};

TEST_F(AutostartTest, the_switch_is_what_the_folder_says_and_done_twice_is_done_once) {
    AutostartItem login = item();
    EXPECT_EQ(login.state(), LoginState::Off);
    EXPECT_EQ(login.set(false), std::nullopt);
    EXPECT_EQ(login.set(true), std::nullopt);
    EXPECT_EQ(login.state(), LoginState::On);
    const QByteArray written = entry();
    EXPECT_TRUE(written.contains("\nExec=\"/opt/vorle\" \"--hidden\"\n")) << written.constData();
    EXPECT_EQ(login.set(true), std::nullopt);
    EXPECT_EQ(entry(), written);
    QFile::remove(login.file()); // by hand
    EXPECT_EQ(login.state(), LoginState::Off);
    const QByteArray begin = "[Desktop Entry]\nType=Application\nExec=/opt/vorle\n";
    const std::pair<QByteArray, LoginState> others[] = {
        {begin, LoginState::On},
        {begin + "Hidden=true\n", LoginState::Off},
        {begin + "X-GNOME-Autostart-enabled=false\n", LoginState::Off},
        {begin + "[Other]\nHidden=true\n", LoginState::On},
        {"[Desktop Entry]\n", LoginState::Off},
        {QByteArray(100'000, '\0'), LoginState::Off},
    };
    for (const auto &[bytes, state] : others) {
        test::writeFile(login.file(), bytes);
        EXPECT_EQ(login.state(), state) << bytes.left(200).constData();
        EXPECT_EQ(login.set(true), std::nullopt);
        EXPECT_EQ(login.state(), LoginState::On);
        EXPECT_EQ(entry(), written);
    }
    EXPECT_EQ(login.set(false), std::nullopt);
    EXPECT_FALSE(QFile::exists(login.file()));
}

TEST_F(AutostartTest, what_the_system_refuses_is_told_and_changes_nothing) {
    test::writeFile(path(QStringLiteral("config")), "a file where the folder would be");
    EXPECT_TRUE(item().set(true).has_value());
    EXPECT_EQ(item().state(), LoginState::Off);
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
        ASSERT_EQ(login.set(true), std::nullopt);
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
