#include "platform/linux/LinuxTerminals.h"
#include "platform/macos/MacTerminals.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using Life = TerminalCommand::Life;

const TerminalSession session{QStringLiteral("/t/s.command"), QStringLiteral("cd '/it''s'; x")};

QStringList words(const char *text) { return QString::fromUtf8(text).split(u' '); }

/// A folder of programs that do nothing.
class Programs {
public:
    QString add(const char *name) const {
        const QString path = m_folder.filePath(QString::fromLatin1(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        return path;
    }
    LinuxTerminals terminals(const QString &shell = {}) const {
        return LinuxTerminals({{m_folder.path()}, shell});
    }

private:
    QTemporaryDir m_folder;
};

TEST(LinuxTerminals, names_the_shell_and_prefers_the_default_terminal) {
    const Programs programs;
    const QString bash = programs.add("bash");
    const auto opens = [&](const char *terminal) {
        return programs.terminals(bash).command(QString::fromLatin1(terminal), session);
    };
    EXPECT_FALSE(opens("Terminal") || opens("iTerm") || opens("Ghostty"));

    const QStringList runs{bash, QStringLiteral("-l"), session.script};
    for (const auto &[name, before] :
         {std::pair("xterm", "-e"), std::pair("gnome-terminal", "--"),
          std::pair("xdg-terminal-exec", ""), std::pair("x-terminal-emulator", "-e")}) {
        const QString program = programs.add(name);
        const QStringList first =
            *before != '\0' ? QStringList{QString::fromLatin1(before)} : QStringList();
        EXPECT_EQ(opens("Terminal"),
                  (TerminalCommand{program, first + runs, Life::LastsAsAWindow, {}}));
    }
    const QString ghostty = programs.add("ghostty");
    EXPECT_EQ(opens("Ghostty"),
              (TerminalCommand{
                  ghostty, QStringList{QStringLiteral("-e")} + runs, Life::LastsAsAWindow, {}}));
    EXPECT_FALSE(opens("iTerm"));
}

TEST(LinuxTerminals, keeps_the_users_shell_open_and_runs_scripts_in_one_that_can) {
    const Programs programs;
    const QString plain = QStringLiteral("/bin/sh");
    for (const char *name : {"zsh", "bash", "dash", "ksh"}) {
        const QString shell = programs.add(name);
        EXPECT_EQ(programs.terminals(shell).shells(), (LoginShells{shell, shell}));
    }
    for (const char *name : {"fish", "tcsh"}) {
        const QString shell = programs.add(name);
        EXPECT_EQ(programs.terminals(shell).shells(), (LoginShells{plain, shell}));
    }
    for (const QString &none : {QString(), programs.add("nologin"), programs.add("false"),
                                QStringLiteral("bash"), QStringLiteral("/gone/bash")}) {
        EXPECT_EQ(programs.terminals(none).shells(), (LoginShells{plain, plain}));
    }
}

TEST(MacTerminals, opens_a_script_or_hands_ghostty_a_line) {
    const QString open = QStringLiteral("/usr/bin/open");
    const QString absent = QStringLiteral("Unable to find application");
    for (const char *name : {"Terminal", "iTerm"}) {
        EXPECT_EQ(
            MacTerminals().command(QString::fromLatin1(name), session),
            (TerminalCommand{open,
                             {QStringLiteral("-a"), QString::fromLatin1(name), session.script},
                             Life::EndsOnceOpen,
                             absent}));
    }
    QStringList arguments = words("-n -a Ghostty --args --window-save-state=never "
                                  "--quit-after-last-window-closed=true");
    arguments +=
        QStringLiteral("--initial-command=/bin/zsh -l -c 'cd '\\''/it'\\'''\\''s'\\''; x'");
    EXPECT_EQ(MacTerminals().command(QStringLiteral("Ghostty"), session),
              (TerminalCommand{open, arguments, Life::EndsOnceOpen, absent}));
    // Only what there can be is offered.
    EXPECT_EQ(MacTerminals().names(), words("Terminal Ghostty iTerm"));
    EXPECT_EQ(LinuxTerminals({{}, {}}).names(), words("Terminal Ghostty"));
    EXPECT_EQ(MacTerminals().shells(),
              (LoginShells{QStringLiteral("/bin/zsh"), QStringLiteral("/bin/zsh")}));
}

} // namespace
} // namespace vorle
