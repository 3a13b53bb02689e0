// Agents that are installed and signed in to from a terminal, by an npm that plays its part.

#include "storage/FileLock.h"
#include "tests/support/Program.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include <gmock/gmock.h>

#include <signal.h>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;
using testing::Not;

/// vorle where no agent is, and an npm that brings a Codex which signs in by itself.
class AgentSetupCommands : public testing::Test {
protected:
    AgentSetupCommands() {
        QDir(vorle.path("home")).removeRecursively();
        QDir().mkpath(vorle.path("home"));
        vorle.environment.insert(QStringLiteral("PATH"),
                                 vorle.path("tools") + QStringLiteral(":/usr/bin:/bin"));
        vorle.environment.remove(QStringLiteral("DISPLAY"));
        vorle.environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    }
    void SetUp() override {
#if defined(Q_OS_MACOS)
        GTEST_SKIP() << "agents are downloaded there";
#endif
    }
    void npm(const QByteArray &shell) {
        test::writeProgram(vorle.path("tools/npm"),
                           "[ \"$1\" = install ] || exit 0\npwd > \"$HOME/where\"\n" + shell);
    }
    /// Whether the folder in which that npm works is there.
    bool working() const {
        const QString folder = QString::fromUtf8(vorle.read("home/where").trimmed());
        EXPECT_TRUE(folder.contains(u"/vorle-install-"));
        return QFileInfo::exists(folder);
    }

    Program vorle;
};

TEST_F(AgentSetupCommands, installs_then_signs_in_and_every_failure_says_why) {
    npm("echo broken >&2; exit 1");
    Program::Outcome failed = vorle.run("installer codex");
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.err, HasSubstr("L’installation n’a pas abouti"));
    EXPECT_THAT(failed.err, HasSubstr("vorle: installing Codex: npm install failed"));
    failed = vorle.run("connecter codex");
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.err, HasSubstr("vorle installer codex"));
    EXPECT_EQ(vorle.run("installer gemini").status, 2);

    npm("mkdir -p \"$4/bin\"; cat > \"$4/bin/codex\" <<'end'\n#!/bin/sh\n"
        "[ \"$1\" = --version ] && exit\n"
        "echo 'Go to https://auth.example.com/x' >&2\n"
        "[ -e \"$HOME/no\" ] || echo '{\"tokens\": {}}' > \"$CODEX_HOME/auth.json\"\nend\n"
        "chmod 755 \"$4/bin/codex\"");
    const Program::Outcome installed = vorle.run("installer codex");
    EXPECT_EQ(installed.status, 0) << installed.err;
    EXPECT_THAT(installed.out, HasSubstr("/.npm-global/bin/codex"));
    EXPECT_THAT(installed.err, HasSubstr("vorle connecter codex"));
    const QJsonArray agents =
        vorle.run("agents --json").object()[QStringLiteral("agents")].toArray();
    EXPECT_EQ(agents[1][QStringLiteral("state")].toString(), QStringLiteral("signed out"));

    vorle.write("home/no", {});
    failed = vorle.run("connecter codex");
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.err, HasSubstr("Connexion pas aboutie"));
    QFile::remove(vorle.path("home/no"));
    const Program::Outcome signedIn = vorle.run("connecter codex");
    EXPECT_EQ(signedIn.status, 0) << signedIn.err;
    EXPECT_THAT(signedIn.err, HasSubstr("https://auth.example.com/x"));
    EXPECT_THAT(signedIn.err, HasSubstr("Connexion à Codex"));
    EXPECT_THAT(signedIn.err, Not(HasSubstr("j’utilise")));
    EXPECT_THAT(signedIn.out, HasSubstr("Je fouillerai avec ton compte ChatGPT."));
    const Program::Outcome again = vorle.run("connecter --json");
    EXPECT_EQ(again.object()[QStringLiteral("state")].toString(), QStringLiteral("ready"));
    EXPECT_THAT(again.err, Not(HasSubstr("signing in")));
    EXPECT_FALSE(working());
    vorle.environment.insert(QStringLiteral("VORLE_AGENT"), QStringLiteral("claude"));
    EXPECT_THAT(vorle.run("connecter codex").err, HasSubstr("j’utilise Claude Code"));
}

TEST_F(AgentSetupCommands, says_what_was_installed_and_what_is_used) {
    npm("mkdir -p \"$4/bin\"; printf '#!/bin/sh\\n' > \"$4/bin/codex\"; chmod 755 "
        "\"$4/bin/codex\"");
    const QString ours = vorle.path("home/.npm-global/bin/codex");
    for (const QString &used : {ours, vorle.path("home/.local/bin/codex")}) {
        if (used != ours) {
            test::writeProgram(used, "exit 0");
        }
        const QJsonObject told = vorle.run("installer codex --json").object();
        EXPECT_EQ(told[QStringLiteral("path")].toString(), used);
        EXPECT_EQ(told[QStringLiteral("installed")].toString(), ours);
    }
}

TEST_F(AgentSetupCommands, an_agent_whose_installation_was_killed_is_back_before_it_is_needed) {
    const QString codex = vorle.path("home/.npm-global/bin/codex");
    const QString kept = vorle.path("home/.npm-global/lib/.vorle-before-codex");
    QDir().mkpath(vorle.path("projet"));
    ASSERT_EQ(vorle.run({QStringLiteral("projet"), QStringLiteral("ajouter"), vorle.path("projet")})
                  .status,
              0);
    for (const char *command : {"connecter codex", "fouille"}) {
        SCOPED_TRACE(command);
        test::writeProgram(kept + QStringLiteral("/program"), "exit 1");
        vorle.environment.insert(QStringLiteral("VORLE_AGENT"), QStringLiteral("codex"));
        {
            // One that lives is left alone.
            FileLock lock(vorle.path("home/.local/state/vorle/install"));
            QDir().mkpath(vorle.path("home/.local/state/vorle"));
            ASSERT_TRUE(lock.tryLock());
            EXPECT_THAT(vorle.run(command).err, HasSubstr("est introuvable"));
            EXPECT_TRUE(QFileInfo::exists(kept));
        }
        const Program::Outcome end = vorle.run(command);
        EXPECT_EQ(end.status, 1);
        EXPECT_THAT(end.err, Not(HasSubstr("est introuvable"))) << end.err;
        EXPECT_TRUE(QFileInfo::exists(codex));
        EXPECT_FALSE(QFileInfo::exists(kept));
        QFile::remove(codex);
    }
}

#if defined(Q_OS_LINUX)
TEST_F(AgentSetupCommands,
       where_nothing_runs_from_the_temporary_folder_a_login_has_its_own_browser) {
    test::writeProgram(vorle.path("home/.local/bin/xdg-open"), "echo \"$1\" > \"$HOME/opened\"\n");
    test::writeProgram(vorle.path("home/.local/bin/claude"),
                       "\"${BROWSER:-xdg-open}\" https://claude.example/own || exit\n"
                       "echo '{\"oauthAccount\": {}}' > \"$HOME/.claude.json\"\n");
    vorle.environment.remove(QStringLiteral("BROWSER"));
    // Its temporary folder, or where it makes one of its own if others may write beside that.
    for (const char *name : {"TMPDIR", "XDG_CACHE_HOME"}) {
        vorle.environment.insert(QString::fromLatin1(name), vorle.path("cache"));
    }
    QDir().mkpath(vorle.path("cache"));
    const auto apart = [this](const QStringList &words) -> Program::Outcome {
        QProcess &process = vorle.command(words);
        process.setArguments(
            QStringList{
                QStringLiteral("--user"), QStringLiteral("--map-root-user"),
                QStringLiteral("--mount"), QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                QStringLiteral("mount -t tmpfs -o noexec,mode=0700 tmpfs \"$XDG_CACHE_HOME\" && "
                               "exec \"$@\""),
                QStringLiteral("sh"), process.program()} +
            words);
        process.setProgram(QStringLiteral("unshare"));
        process.start();
        return Program::end(process);
    };
    if (apart({QStringLiteral("--version")}).status != 0) {
        GTEST_SKIP() << "no file system can be mounted apart here";
    }
    const Program::Outcome end = apart({QStringLiteral("connecter"), QStringLiteral("claude")});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(vorle.read("home/opened").trimmed(), QByteArray("https://claude.example/own"));
}
#endif

TEST_F(AgentSetupCommands, a_kill_leaves_a_folder_that_the_next_start_takes_away) {
    npm("echo $$ > \"$HOME/npm\"; sleep 600");
    QProcess &process = vorle.start("installer codex");
    test::spinUntil([this] { return !vorle.read("home/npm").trimmed().isEmpty(); });
    EXPECT_TRUE(working());
    EXPECT_EQ(vorle.run("agents").status, 0); // another that starts meanwhile
    EXPECT_TRUE(working()) << "it is in use";
    const Program::Outcome second = vorle.run("installer codex");
    EXPECT_EQ(second.status, 1);
    EXPECT_THAT(second.err, HasSubstr("Une installation est déjà en cours"));
    process.kill();
    Program::end(process);
    const auto npmProcess = pid_t(vorle.read("home/npm").trimmed().toLongLong());
    test::spinUntil([&] { return ::kill(npmProcess, 0) != 0; });
    EXPECT_EQ(vorle.run("agents").status, 0);
    EXPECT_FALSE(working());

    QProcess &stopped = vorle.start("installer codex");
    test::spinUntil([&] {
        const auto now = pid_t(vorle.read("home/npm").trimmed().toLongLong());
        return now > 0 && now != npmProcess;
    });
    stopped.terminate();
    const Program::Outcome end = Program::end(stopped);
    EXPECT_EQ(end.status, 1);
    EXPECT_THAT(end.err, HasSubstr("Arrêté."));
    EXPECT_FALSE(working());
}

} // namespace
} // namespace vorle
