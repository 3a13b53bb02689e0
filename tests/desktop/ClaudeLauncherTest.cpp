#include "desktop/ClaudeLauncher.h"

#include "agents/AgentError.h"
#include "desktop/LaunchPrompt.h"
#include "platform/fakes/FakeLinkOpener.h"
#include "platform/fakes/FakePasteboard.h"
#include "platform/fakes/FakeTerminals.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using Life = TerminalCommand::Life;
using Where = ClaudeLauncher::Where;

Topic ofProject() {
    Topic topic;
    topic.title = QStringLiteral("Un « titre » $(pwned)");
    topic.project = QStringLiteral("vorle");
    return topic;
}

/// A launcher with agents, terminals and a browser that do what a test says.
class Desk {
public:
    Desk() {
        m_variables.set("HOME", agent.home()); // where a scripted agent notes its calls
        QDir().mkpath(folder());
        preferences.change(&Settings::projects, {{QStringLiteral("vorle"), folder()}});
        agent.install(AgentKind::Claude, ":");
        agent.install(AgentKind::Codex, ":");
        environment = agent.environment();
        terminals.loginShells.session = QStringLiteral("/bin/true");
        inTerminal("exec \"$@\"", Life::EndsOnceOpen);
    }

    QString folder() const { return agent.home() + QStringLiteral("/le projet"); }

    /// Every terminal is a program that runs `shell`, which finds the command to run in "$@".
    void inTerminal(const QByteArray &shell, Life life, const QString &absence = {}) {
        test::writeProgram(agent.home() + QStringLiteral("/terminal"), shell);
        terminals.answer = [this, life, absence](const QString &terminal,
                                                 const TerminalSession &session) {
            asked = terminal;
            TerminalCommand command;
            command.program = agent.home() + QStringLiteral("/terminal");
            command.arguments = {session.script};
            command.life = life;
            command.absence = absence;
            return std::optional(command);
        };
    }

    Where take(const Topic &topic) {
        const AgentLocator locator(
            environment, [this] { return preferences.settings().agent.value_or(QString()); });
        ClaudeLauncher launcher({locator, preferences, terminals, pasteboard, links}, {30s, 300ms});
        label = launcher.label();
        const Where where = test::waitFor(launcher.takeFirstStep(topic));
        hint = launcher.hint(where);
        return where;
    }

    /// The text of the failure, empty when there is none.
    QString failure(const Topic &topic) {
        try {
            take(topic);
        } catch (const LaunchError &error) {
            return error.text();
        } catch (const AgentError &error) {
            return error.text();
        }
        return {};
    }

    const test::ScriptedAgent agent;
    AgentEnvironment environment;
    Preferences preferences{
        std::make_unique<SettingsFile>(agent.home() + QStringLiteral("/settings.json"))};
    test::FakeTerminals terminals;
    test::FakePasteboard pasteboard;
    test::FakeLinkOpener links;
    QString asked;
    QString label;
    QString hint;

private:
    test::Variables m_variables;
};

TEST(ClaudeLauncher, opens_the_chosen_terminal_on_files_of_the_users_own_that_go) {
    Desk desk;
    desk.preferences.change(&Settings::terminal, TerminalApp::Ghostty);
    desk.preferences.change(&Settings::agent, QStringLiteral("codex"));
    desk.inTerminal("stat -c '%a %n' \"$TMPDIR\"/* > \"$HOME/modes\" 2>&1\nexec \"$@\"",
                    Life::EndsOnceOpen);
    EXPECT_EQ(desk.take(ofProject()), Where::Terminal);
    EXPECT_EQ(desk.asked, u"Ghostty");
    EXPECT_EQ(desk.label, u"Lancer dans Codex ou approfondir avec ChatGPT");
    EXPECT_TRUE(desk.hint.isEmpty());

    const QByteArray modes = test::readFile(desk.agent.home() + QStringLiteral("/modes"));
    EXPECT_TRUE(modes.contains("600 ") && modes.contains("/vorle-launch-")) << modes.constData();
    EXPECT_EQ(modes.count("755 "), 1) << modes.constData();
    const auto calls = desk.agent.calls();
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].arguments,
              QStringList{launchPrompt(ofProject(), LaunchTarget::ProjectFolder)});
    EXPECT_EQ(calls[0].directory, QDir(desk.folder()).canonicalPath());
    EXPECT_TRUE(desk.agent.leftovers().isEmpty());
    EXPECT_TRUE(desk.links.opened.isEmpty());
}

TEST(ClaudeLauncher, lets_a_terminal_live_and_tells_one_that_dies_at_once) {
    Desk desk;
    // Runs the session, then stays as a window does until the test is over.
    desk.inTerminal("\"$@\"\nwhile [ -e \"$0\" ]; do sleep 0.05; done\n: > \"$TMPDIR/left\"",
                    Life::LastsAsAWindow);
    EXPECT_EQ(desk.take(ofProject()), Where::Terminal);
    test::spinUntil([&] { return desk.agent.calls().size() == 1; });
    QFile::remove(desk.agent.home() + QStringLiteral("/terminal"));
    test::spinUntil([&] { return desk.agent.leftovers() == QStringList{QStringLiteral("left")}; });

    // Hands over to one that runs already, or is slow to begin: the files are still needed.
    for (const char *shell : {"exit 0", "sleep 0.6\n: > \"$TMPDIR/ended\""}) {
        desk.inTerminal(shell, Life::LastsAsAWindow);
        EXPECT_EQ(desk.failure(ofProject()), QString());
        EXPECT_EQ(desk.agent.leftovers().filter(QStringLiteral("vorle-launch-")).size(), 2);
        for (const QString &name : desk.agent.leftovers()) {
            QFile::remove(desk.agent.temporary() + u'/' + name);
        }
    }
    // The slow one is waited for, and what watched it goes with it.
    test::spinUntil([&] { return desk.agent.leftovers().contains(QStringLiteral("ended")); });
    QElapsedTimer since;
    since.start();
    test::spinUntil([&] { return since.elapsed() > 500; });
}

TEST(ClaudeLauncher, tells_why_no_window_opened_and_leaves_nothing) {
    const QString notFound = QStringLiteral("le terminal choisi est introuvable.");
    const QString failed = QStringLiteral("Le Terminal n’a pas pu être ouvert : ");
    const struct {
        const char *shell;
        Life life;
        QString text;
    } cases[] = {
        {"echo \"Unable to find application named 'iTerm'\" >&2; exit 1", Life::EndsOnceOpen,
         notFound},
        {"printf 'no\\n  display\\033[2J' >&2; exit 1", Life::EndsOnceOpen,
         failed + QStringLiteral("no   display [2J")},
        {"printf \"Can't open display\" >&2; exit 1", Life::LastsAsAWindow,
         failed + QStringLiteral("Can't open display")},
        {"kill -9 $$", Life::LastsAsAWindow, failed + QStringLiteral("il s’est arrêté aussitôt.")},
    };
    Desk desk;
    for (const auto &[shell, life, text] : cases) {
        desk.inTerminal(shell, life, QStringLiteral("Unable to find application"));
        EXPECT_EQ(desk.failure(ofProject()), text);
    }
    for (const Life life : {Life::EndsOnceOpen, Life::LastsAsAWindow}) {
        desk.inTerminal("", life);
        QFile::remove(desk.agent.home() + QStringLiteral("/terminal"));
        EXPECT_TRUE(desk.failure(ofProject()).startsWith(failed));
    }
    desk.terminals.answer = [](const QString &, const TerminalSession &) {
        return std::optional<TerminalCommand>();
    };
    EXPECT_EQ(desk.failure(ofProject()), notFound);
    QDir().rmdir(desk.folder());
    EXPECT_EQ(desk.failure(ofProject()),
              failed +
                  QStringLiteral("le dossier du projet est introuvable (%1).").arg(desk.folder()));
    EXPECT_TRUE(desk.agent.leftovers().isEmpty());
    EXPECT_TRUE(desk.agent.calls().isEmpty());
}

TEST(ClaudeLauncher, takes_the_claude_that_the_environment_names) {
    Desk desk;
    const QString other = desk.agent.home() + QStringLiteral("/other claude");
    QFile::copy(desk.agent.home() + QStringLiteral("/.local/bin/claude"), other);
    QFile::remove(desk.agent.home() + QStringLiteral("/.local/bin/claude"));
    desk.environment.variables.insert(QStringLiteral("VORLE_CLAUDE_BIN"), other);
    EXPECT_EQ(desk.failure(ofProject()), QString());
    EXPECT_EQ(desk.agent.calls().size(), 1);

    desk.environment.variables.insert(QStringLiteral("VORLE_CLAUDE_BIN"), desk.folder());
    EXPECT_EQ(desk.failure(ofProject()), u"Claude Code est introuvable sur ce Mac.");
    desk.preferences.change(&Settings::agent, QStringLiteral("codex"));
    EXPECT_EQ(desk.failure(ofProject()), QString());
}

TEST(ClaudeLauncher, hands_a_topic_without_a_watched_project_to_the_web_chat) {
    Desk desk;
    Topic topic;
    topic.title = QStringLiteral("Sans projet");
    const QString prompt = launchPrompt(topic, LaunchTarget::Elsewhere);
    desk.pasteboard.replace(QStringLiteral("avant"));
    desk.links.onOpen = [&] { EXPECT_EQ(desk.pasteboard.text(), prompt); };
    EXPECT_EQ(desk.take(topic), Where::WebChat);
    EXPECT_EQ(desk.label, u"Lancer dans Claude Code ou approfondir avec Claude");
    EXPECT_EQ(desk.hint, u"La consigne est copiée : colle-la dans Claude.");
    desk.preferences.change(&Settings::agent, QStringLiteral("codex"));
    EXPECT_EQ(desk.take(topic), Where::WebChat);
    EXPECT_EQ(desk.links.opened, (QList<QUrl>{QUrl(QStringLiteral("https://claude.ai/new")),
                                              QUrl(QStringLiteral("https://chatgpt.com/"))}));

    desk.pasteboard.replace({});
    desk.links.takes = false;
    EXPECT_EQ(desk.failure(topic),
              u"Le navigateur n’a pas pu être ouvert. La consigne est copiée.");
    EXPECT_EQ(desk.pasteboard.text(), prompt);
    EXPECT_TRUE(desk.agent.leftovers().isEmpty());
}

} // namespace
} // namespace vorle
