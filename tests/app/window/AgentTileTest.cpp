// Agents installed and signed in to in the window, by an npm and agents that play their part.

#include "agents/setup/AgentPackage.h"
#include "tests/app/window/OpenWindow.h"

#include <QAccessible>

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
    void openAgents() {
        open();
        press(Qt::Key_Comma, Qt::ControlModifier);
        auto &pages = *shell().screens()->settingsPages();
        pages.setPage(int(pages.pages().indexOf(QStringLiteral("Ton IA"))));
        QTest::qWait(60); // laid out
    }
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
    ASSERT_TRUE(reach("Installer, Codex"));
    press(Qt::Key_Return);
    waitUntilSaid("L’installation n’a pas abouti\u00A0: vérifie ta connexion à Internet.");
    EXPECT_TRUE(says("Avec un compte ChatGPT, même gratuit"));

    npm("while [ ! -e \"$HOME/go\" ]; do sleep 0.1; done\n" + bringsCodex);
    ASSERT_TRUE(reach("Installer, Codex")) << "the keyboard stays on it";
    press(Qt::Key_Return);
    EXPECT_TRUE(says("Installation…") && says("Environ une minute, rien à faire de ton côté."));
    EXPECT_FALSE(says("L’installation n’a pas abouti"));
    ASSERT_TRUE(reach("Arrêter, Codex"));
    press(Qt::Key_Return);
    test::spinUntil([this] { return !says("Installation…"); });
    EXPECT_FALSE(says("L’installation n’a pas abouti")) << "it was asked for";
    press(Qt::Key_Return);
    test::writeFile(home("/go"), {});
    waitUntilSaid("Tu autorises vorle à utiliser ton compte ChatGPT, même gratuit");

    ASSERT_TRUE(reach("Me connecter, Codex"));
    press(Qt::Key_Return);
    EXPECT_TRUE(says("Valide la connexion dans la page qui vient de s’ouvrir."));
    test::spinUntil([this] { return !m_links.opened.isEmpty(); });
    test::writeFile(home("/closed"), {});
    waitUntilSaid("Connexion pas aboutie\u00A0: la page a été fermée, ou le délai est passé.");
    EXPECT_FALSE(shell().agentStates()->isReady());
    QFile::remove(home("/closed"));
    m_links.takes = false;
    ASSERT_TRUE(reach("Me connecter, Codex"));
    press(Qt::Key_Return);
    waitUntilSaid("Copier l’adresse");
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

TEST_F(AgentTileTest, without_npm_it_says_how_to_get_one_and_a_demonstration_offers_nothing) {
    m_app.variables.set("PATH", QStringLiteral("/nowhere"));
    if (npmProgram(m_app->agent().locator())) {
        GTEST_SKIP() << "this machine has one where agents are looked for";
    }
    openAgents();
    ASSERT_TRUE(reach("Installer, Claude Code"));
    press(Qt::Key_Return);
    waitUntilSaid("il me faut npm");
    EXPECT_TRUE(says("paquet «\u202Fnpm\u202F»"));

    AgentStates shownOnly({.agents = m_app->agent().locator(),
                           .preferences = m_app->preferences(),
                           .setup = m_app->agentSetup(),
                           .links = m_links,
                           .pasteboard = m_pasteboard,
                           .settable = false});
    shownOnly.act(QStringLiteral("codex"));
    for (const AgentState &state : shownOnly.states()) {
        EXPECT_TRUE(state.action.isEmpty() && !state.working);
    }
}

} // namespace
} // namespace vorle
