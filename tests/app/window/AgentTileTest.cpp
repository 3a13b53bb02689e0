// Agents installed and signed in to in the window, by an npm and agents that play their part.

#include "agents/setup/RunningNpm.h"
#include "base/HttpClient.h"
#include "platform/fakes/FakeSignatureCheck.h"
#include "tests/app/window/OpenWindow.h"
#include "tests/support/TestServer.h"

#include <QAccessible>
#include <QElapsedTimer>

#include <signal.h>

namespace vorle {
namespace {

class AgentTileTest : public test::OpenWindow {
protected:
    AgentTileTest() {
        QFile::remove(home("/.local/bin/claude"));
        m_app.variables.set("PATH", m_app.program.path("tools") + QStringLiteral(":/usr/bin:/bin"));
    }
    ~AgentTileTest() override {
        if (m_shell) {
            test::waitFor(m_shell->stopped());
        }
    }
    QString home(const char *path) { return m_app.program.path("home") + QString::fromUtf8(path); }
    void npm(const QByteArray &shell) {
        test::writeProgram(m_app.program.path("tools/npm"),
                           "[ \"$1\" = install ] || exit 0\n" + shell);
    }
    bool says(const char *words) {
        return shownTexts().join(u'\n').contains(QString::fromUtf8(words));
    }
    void waitUntilSaid(const char *words) {
        test::spinUntil([&] { return says(words); });
    }
    /// What assistive technology is told of the control that has the keyboard.
    QString here() {
        QQuickItem *at = window().activeFocusItem();
        QAccessibleInterface *heard =
            at != nullptr ? QAccessible::queryAccessibleInterface(at) : nullptr;
        return heard != nullptr ? heard->text(QAccessible::Name) : QString();
    }
    /// Tab goes to the button of that name, as assistive technology has it.
    bool reach(const char *name) {
        for (int i = 0; i < 40; ++i) {
            if (here() == QString::fromUtf8(name)) {
                return true;
            }
            press(Qt::Key_Tab);
        }
        return false;
    }
    /// Presses the button of that name once what it says has stood long enough to be read.
    void act(const char *name) {
        ASSERT_TRUE(reach(name)) << name << ", at " << here().toStdString();
        test::spinUntil([this] {
            const QQuickItem *at = window().activeFocusItem();
            while (at != nullptr && !at->property("settled").isValid()) {
                at = at->parentItem();
            }
            return at != nullptr && at->property("settled").toBool();
        });
        press(Qt::Key_Return);
    }
    /// As a terminal does it: Codex, of which every word but the version runs `login`.
    void bringCodex(const QByteArray &login) {
        test::writeProgram(home("/.local/bin/codex"), "[ \"$1\" = --version ] && exit\n"
                                                      "echo $$ > \"$HOME/login\"\n" +
                                                          login);
    }
    /// Whether a login began since this was asked last.
    bool loginBegan() {
        m_login = pid_t(test::readFile(home("/login")).trimmed().toLongLong());
        return m_login > 0 && QFile::remove(home("/login"));
    }
    bool loginRuns() const { return m_login > 0 && ::kill(m_login, 0) == 0; }
    void openAgents() {
        open();
        press(Qt::Key_Comma, Qt::ControlModifier);
        auto &pages = *shell().screens()->settingsPages();
        pages.setPage(int(pages.pages().indexOf(QStringLiteral("Ton IA"))));
        QTest::qWait(60); // laid out
    }

    pid_t m_login = 0;
};

/// Brings a Codex whose login waits for the page to be confirmed: for a file.
const QByteArray bringsCodex =
    "mkdir -p \"$4/bin\"; cat > \"$4/bin/codex\" <<'end'\n#!/bin/sh\n"
    "[ \"$1\" = --version ] && exit\n"
    "echo 'Go to https://auth.example.com/x' >&2\n"
    "while [ ! -e \"$HOME/confirmed\" ]; do [ -e \"$HOME/closed\" ] && exit 1; sleep 0.1; done\n"
    "echo '{\"tokens\": {}}' > \"$CODEX_HOME/auth.json\"\nend\nchmod 755 \"$4/bin/codex\"";

TEST_F(AgentTileTest, an_agent_is_installed_and_signed_in_to_by_keys_alone) {
    npm("exit 1");
    openAgents();
    EXPECT_TRUE(says("Avec un abonnement Claude, Pro ou plus"));
    EXPECT_TRUE(says("Avec un compte ChatGPT, même gratuit"));
    act("Installer, Codex");
    waitUntilSaid("L’installation n’a pas abouti\u00A0: vérifie ta connexion à Internet.");
    EXPECT_TRUE(says("Avec un compte ChatGPT, même gratuit"));

    npm("while [ ! -e \"$HOME/go\" ]; do sleep 0.1; done\n" + bringsCodex);
    EXPECT_EQ(here(), QStringLiteral("Installer, Codex")) << "the keyboard stays on it";
    act("Installer, Codex");
    press(Qt::Key_Return); // of a press done twice, the second is none of "Arrêter"
    EXPECT_TRUE(says("Installation…") && says("Environ une minute, rien à faire de ton côté."));
    EXPECT_FALSE(says("L’installation n’a pas abouti"));
    EXPECT_TRUE(shell().isAtWork());
    act("Arrêter, Codex");
    test::spinUntil([this] { return !says("Installation…"); });
    EXPECT_FALSE(says("L’installation n’a pas abouti")) << "it was asked for";
    act("Installer, Codex");
    test::writeFile(home("/go"), {});
    waitUntilSaid("Tu autorises vorle à utiliser ton compte ChatGPT, même gratuit");

    act("Me connecter, Codex");
    EXPECT_TRUE(says("Valide la connexion dans la page qui vient de s’ouvrir."));
    waitUntilSaid("Copier l’adresse"); // a browser may take a page and not show it
    EXPECT_EQ(m_links.opened.size(), 1);
    EXPECT_TRUE(says("Valide la connexion dans la page qui vient de s’ouvrir."));
    EXPECT_TRUE(shell().isAtWork());
    test::writeFile(home("/closed"), {});
    waitUntilSaid("Connexion pas aboutie\u00A0: la page a été fermée, ou le délai est passé.");
    EXPECT_FALSE(shell().agentStates()->isReady());
    QFile::remove(home("/closed"));
    m_links.takes = false;
    EXPECT_FALSE(says("Copier l’adresse"));
    EXPECT_FALSE(shell().isAtWork());
    act("Me connecter, Codex");
    waitUntilSaid("Je n’ai pas pu ouvrir ton navigateur");
    ASSERT_TRUE(reach("Copier l’adresse"));
    press(Qt::Key_Return);
    EXPECT_EQ(m_pasteboard.text(), QStringLiteral("https://auth.example.com/x"));
    EXPECT_EQ(shell().agent(), QStringLiteral("claude"));
    test::writeFile(home("/confirmed"), {});
    waitUntilSaid("Je fouillerai avec ton compte ChatGPT.");
    EXPECT_TRUE(says("✓ prêt"));
    EXPECT_TRUE(says("Chaque fouille compte dans ton quota"));
    EXPECT_TRUE(shell().agentStates()->isReady());
    EXPECT_EQ(shell().agent(), QStringLiteral("codex")) << "the whole app follows";
    EXPECT_EQ(here(), QStringLiteral("Codex, prêt")) << "the button that had the keyboard is gone";
    EXPECT_FALSE(reach("Me connecter, Codex"));
}

TEST_F(AgentTileTest, a_problem_goes_with_what_it_was_about) {
    npm("exit 1");
    openAgents();
    act("Installer, Codex");
    waitUntilSaid("L’installation n’a pas abouti");
    bringCodex("exit 1");
    shell().refresh(); // as when the window comes to the front
    EXPECT_TRUE(says("Tu autorises vorle à utiliser ton compte ChatGPT"));
    EXPECT_FALSE(says("L’installation n’a pas abouti"));
    act("Me connecter, Codex");
    waitUntilSaid("Connexion pas aboutie");
    shell().refresh();
    EXPECT_TRUE(says("Connexion pas aboutie")) << "it is signed out as it was";
    m_app.program.agent.signIn(AgentKind::Codex);
    shell().refresh();
    m_app.program.agent.signOut(AgentKind::Codex);
    shell().refresh();
    EXPECT_FALSE(says("Connexion pas aboutie")) << "of another sign-in";
    act("Me connecter, Codex");
    waitUntilSaid("Connexion pas aboutie");
    QFile::remove(home("/.local/bin/codex"));
    shell().refresh();
    EXPECT_TRUE(says("Avec un compte ChatGPT"));
    EXPECT_FALSE(says("Connexion pas aboutie"));
}

TEST_F(AgentTileTest, a_button_does_what_it_said_or_nothing) {
    npm("touch \"$HOME/asked\"; exit 1");
    openAgents();
    ASSERT_TRUE(reach("Installer, Codex"));
    bringCodex("sleep 600");
    act("Installer, Codex"); // what it says is no longer so
    EXPECT_TRUE(says("Tu autorises vorle à utiliser ton compte ChatGPT"));
    press(Qt::Key_Return); // before the new words can have been read
    shell().agentStates()->act(QStringLiteral("codex"), QStringLiteral("Arrêter"));
    shell().agentStates()->act(QStringLiteral("codex"), QString());
    EXPECT_FALSE(shell().isAtWork());
    EXPECT_TRUE(m_links.opened.isEmpty());
    QFile::remove(home("/.local/bin/codex"));
    act("Me connecter, Codex");
    EXPECT_TRUE(says("Avec un compte ChatGPT"));
    EXPECT_FALSE(shell().isAtWork() || loginBegan() || QFile::exists(home("/asked")));
}

TEST_F(AgentTileTest, who_is_signed_in_is_told_so_however_the_login_ends) {
    const QByteArray signsIn = "mkdir -p \"$CODEX_HOME\"\n"
                               "echo '{\"tokens\": {}}' > \"$CODEX_HOME/auth.json\"\n";
    const QByteArray waits = "while :; do sleep 0.1; done\n";
    openAgents();
    struct Way {
        const char *name;
        QByteArray login;
        std::function<void()> end;
    };
    const Way ways[] = {
        {"stopped once it was done",
         "trap '" + QByteArray("exec /bin/sh \"$HOME/done\"") + "' TERM\n" + waits,
         [this] { act("Arrêter, Codex"); }},
        {"stopped before it saw its end", signsIn + waits, [this] { act("Arrêter, Codex"); }},
        {"signed in elsewhere", waits,
         [this] {
             m_app.program.agent.signIn(AgentKind::Codex);
             shell().refresh();
         }},
    };
    test::writeFile(home("/done"), signsIn);
    for (const Way &way : ways) {
        SCOPED_TRACE(way.name);
        m_app.program.agent.signOut(AgentKind::Codex);
        bringCodex(way.login);
        shell().refresh();
        int told = 0;
        const auto count =
            QObject::connect(shell().agentStates(), &AgentStates::setUp, [&told] { ++told; });
        EXPECT_EQ(shell().agent(), QStringLiteral("claude"));
        act("Me connecter, Codex");
        test::spinUntil([this] { return loginBegan(); });
        QTest::qWait(300); // it has set itself up
        way.end();
        waitUntilSaid("Je fouillerai avec ton compte ChatGPT.");
        EXPECT_TRUE(shell().agentStates()->isReady());
        EXPECT_FALSE(shell().isAtWork());
        test::spinUntil([&] { return told > 0 && !loginRuns(); });
        QCoreApplication::processEvents();
        EXPECT_EQ(told, 1);
        QObject::disconnect(count);
    }
}

TEST_F(AgentTileTest, closing_the_window_meanwhile_is_asked_about_as_what_it_would_break_off) {
    npm("while [ ! -e \"$HOME/go\" ]; do sleep 0.1; done\n" + bringsCodex);
    openAgents();
    int quits = 0;
    QObject::connect(m_main.get(), &MainWindow::quitAsked, [&] { ++quits; });
    act("Installer, Codex");
    m_main->askToClose();
    waitUntilSaid("Quitter pendant l’installation\u202F?");
    EXPECT_TRUE(says("Continuer l’installation"));
    EXPECT_FALSE(says("la fouille avec moi"));
    test::writeFile(home("/go"), {});
    test::spinUntil(
        [this] { return !says("Quitter pendant"); }); // there is nothing to ask any more
    EXPECT_FALSE(shell().isAtWork());

    shell().agentStates()->act(QStringLiteral("codex"), QStringLiteral("Me connecter"));
    m_main->askToClose();
    waitUntilSaid("Quitter pendant la connexion\u202F?");
    press(Qt::Key_Escape);
    test::spinUntil([this] { return !says("Quitter pendant"); });
    EXPECT_TRUE(shell().isAtWork());
    EXPECT_EQ(quits, 0);
    m_main->askToClose();
    press(Qt::Key_Return);
    EXPECT_EQ(quits, 1);
}

TEST_F(AgentTileTest, an_agent_whose_installation_was_killed_is_back_once_one_looks) {
    openAgents();
    // By a terminal, meanwhile.
    const QString kept = home("/.npm-global/lib/.vorle-before-codex");
    test::writeProgram(kept + QStringLiteral("/program"), "exit 1");
    shell().refresh(); // as when the window comes to the front
    test::spinUntil([&] { return !QFileInfo::exists(kept); });
    test::spinUntil([this] { return says("Tu autorises vorle à utiliser ton compte ChatGPT"); });
    // One that does not answer holds no end of the program up.
    test::writeProgram(kept + QStringLiteral("/program"), "exit 1");
    test::writeProgram(home("/.npm-global/bin/codex"), "echo $$ > \"$HOME/login\"; sleep 600");
    shell().refresh();
    test::spinUntil([this] { return loginBegan(); });
    QElapsedTimer time;
    time.start();
    test::waitFor(m_shell->stopped());
    EXPECT_LT(time.elapsed(), 10'000);
    EXPECT_FALSE(loginRuns());
    EXPECT_TRUE(QFileInfo::exists(kept)) << "for the next start";
}

TEST_F(AgentTileTest, a_download_tells_how_far_it_is) {
    test::TestServer server;
    HttpClient http(true);
    const test::FakeSignatureCheck signatures;
    AgentSources sources;
    sources.codexReleases = server.url("/", QStringLiteral("localhost"));
    server.serve("/" + sources.codexBuild.toLatin1() + ".tar.gz",
                 test::TestReply::shaped(test::TestReply::Shape::Dripping, QByteArray(100, 'x')));
    const AgentSetup setup({m_app->agent().locator(),
                            OnDemand<HttpClient>([&http]() -> auto & { return http; }), &signatures,
                            sources});
    AgentStates states({.agents = m_app->agent().locator(),
                        .preferences = m_app->preferences(),
                        .setup = setup,
                        .links = m_links,
                        .pasteboard = m_pasteboard});
    QStringList told;
    QObject::connect(&states, &AgentStates::changed, [&] { told += states.states()[1].text; });
    states.act(QStringLiteral("codex"), QStringLiteral("Installer"));
    test::spinUntil([&] { return states.states()[1].percent >= 3; });
    EXPECT_EQ(told.first(), QStringLiteral("Installation…"));
    EXPECT_EQ(told.last(),
              QStringLiteral("Installation… %1\u00A0%").arg(states.states()[1].percent));
    states.act(QStringLiteral("codex"), QStringLiteral("Arrêter"));
    test::waitFor(states.stopped());
    EXPECT_EQ(states.states()[1].action, QStringLiteral("Installer"));
    EXPECT_EQ(states.states()[1].percent, -1);
}

TEST_F(AgentTileTest, without_npm_it_says_how_to_get_one_and_a_demonstration_offers_nothing) {
    m_app.variables.set("PATH", QStringLiteral("/nowhere"));
    if (!npmPrograms(m_app->agent().locator()).isEmpty()) {
        GTEST_SKIP() << "this machine has one where agents are looked for";
    }
    openAgents();
    act("Installer, Claude Code");
    waitUntilSaid("il me faut npm");
    EXPECT_TRUE(says("paquet «\u202Fnpm\u202F»"));

    AgentStates shownOnly({.agents = m_app->agent().locator(),
                           .preferences = m_app->preferences(),
                           .setup = m_app->agentSetup(),
                           .links = m_links,
                           .pasteboard = m_pasteboard,
                           .settable = false});
    shownOnly.act(QStringLiteral("codex"), QStringLiteral("Installer"));
    for (const AgentState &state : shownOnly.states()) {
        EXPECT_TRUE(state.action.isEmpty() && !state.working);
    }
}

} // namespace
} // namespace vorle
