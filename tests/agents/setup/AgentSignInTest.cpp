#include "agents/setup/AgentSignIn.h"
#include "agents/AgentError.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <QDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;

class AgentSignInTest : public testing::Test {
protected:
    bool signIn(AgentKind kind, std::chrono::milliseconds limit = 60s) {
        return test::waitFor(run(kind, limit, {}));
    }
    Task<bool> run(AgentKind kind, std::chrono::milliseconds limit, CancelToken cancel) {
        return signInAgent(
            m_locator, kind, [this](const WebLink &page) { m_pages += page.text(); }, limit,
            std::move(cancel));
    }

    test::ScriptedAgent m_agents;
    AgentLocator m_locator{m_agents.environment(), nullptr};
    QStringList m_pages;
};

TEST_F(AgentSignInTest, codex_shows_the_page_that_it_prints_once_and_none_that_it_opens) {
    EXPECT_THROW(signIn(AgentKind::Codex), AgentError) << "it is not there";
    m_agents.install(
        AgentKind::Codex,
        "cat > \"$call/input\"\n"
        "echo 'Starting a server on http://localhost:1455' >&2\n"
        "printf 'Go to: https://auth.example.com/oauth?a=1' >&2; sleep 0.6\n"
        "printf '&b=2\\033[0m\\nor https://other.example/\\n' >&2\n"
        "[ -z \"$BROWSER\" ] || \"$BROWSER\" https://auth.example.com/own\n"
        "mkdir -p \"$CODEX_HOME\"; echo '{\"tokens\": {}}' > \"$CODEX_HOME/auth.json\"\n");
    EXPECT_TRUE(signIn(AgentKind::Codex));
    EXPECT_EQ(m_pages, QStringList{QStringLiteral("https://auth.example.com/oauth?a=1&b=2")});
    ASSERT_EQ(m_agents.calls().size(), 1);
    const auto call = m_agents.calls().first();
    EXPECT_EQ(call.arguments, QStringList{QStringLiteral("login")});
    EXPECT_EQ(call.input, QByteArray()) << "nothing to read, and no waiting for it";
    EXPECT_TRUE(call.environment[QStringLiteral("PATH")].contains(m_agents.home()));
    EXPECT_EQ(m_agents.leftovers(), QStringList());
}

TEST_F(AgentSignInTest, a_place_of_its_own_that_a_person_gave_an_agent_is_the_logins_too) {
    const struct {
        AgentKind kind;
        const char *variable;
        const char *signsIn; ///< where it keeps the account
    } cases[] = {
        {AgentKind::Codex, "CODEX_HOME", "echo '{\"tokens\": {}}' > \"$CODEX_HOME/auth.json\""},
        {AgentKind::Claude, "CLAUDE_CONFIG_DIR",
         "echo '{\"oauthAccount\": {}}' > \"$CLAUDE_CONFIG_DIR/.claude.json\""},
    };
    for (const auto &each : cases) {
        const QString own = m_agents.home() + QStringLiteral("/own");
        QDir().mkpath(own);
        AgentEnvironment environment = m_agents.environment();
        environment.userHome = m_agents.home();
        environment.variables.remove(QStringLiteral("VORLE_HOME"));
        environment.variables.insert(QStringLiteral("HOME"), m_agents.home());
        environment.variables.insert(QString::fromUtf8(each.variable), own);
        const AgentLocator agents(environment, nullptr);
        m_agents.install(each.kind, "exit 0");
        EXPECT_FALSE(test::waitFor(signInAgent(agents, each.kind, [](auto &) {}, 60s, {})));
        m_agents.install(each.kind, each.signsIn);
        EXPECT_TRUE(test::waitFor(signInAgent(agents, each.kind, [](auto &) {}, 60s, {})));
        environment.variables.insert(QStringLiteral("VORLE_HOME"), m_agents.home());
        EXPECT_EQ(AgentLocator(environment, nullptr).readiness(each.kind),
                  AgentReadiness::SignedOut)
            << "a home of its own knows nothing of it";
    }
}

#if defined(Q_OS_LINUX)
TEST_F(AgentSignInTest, claude_code_shows_the_page_that_it_opens_and_not_the_one_that_it_prints) {
    m_agents.install(AgentKind::Claude,
                     "echo 'If the browser did not open: https://claude.example/code'\n"
                     "xdg-open 'https://claude.example/own?x=1' || exit 1\n"
                     "\"$BROWSER\" 'https://claude.example/again'\nsleep 0.6\n"
                     "echo '{\"oauthAccount\": {}}' > \"$HOME/.claude.json\"\n");
    EXPECT_TRUE(signIn(AgentKind::Claude));
    EXPECT_EQ(m_pages, QStringList{QStringLiteral("https://claude.example/own?x=1")});
    EXPECT_EQ(m_agents.calls().first().arguments,
              (QStringList{QStringLiteral("auth"), QStringLiteral("login")}));
    m_pages.clear();
    m_agents.signOut();
    m_agents.install(AgentKind::Claude, "xdg-open 'file:///etc/passwd'; exit 0");
    EXPECT_FALSE(signIn(AgentKind::Claude));
    EXPECT_EQ(m_pages, QStringList()) << "no page of the web";
}
#endif

TEST_F(AgentSignInTest, ends_unsigned_when_the_page_is_closed_the_time_is_up_or_it_is_stopped) {
    for (const char *last : {"echo https://auth.example.com/ >&2; exit 1",
                             "printf https://auth.example.com/ >&2; exit 1"}) {
        m_agents.install(AgentKind::Codex, last);
        m_pages.clear();
        EXPECT_FALSE(signIn(AgentKind::Codex));
        EXPECT_EQ(m_pages, QStringList{QStringLiteral("https://auth.example.com/")})
            << "it was printed just before the end";
    }
    m_agents.install(AgentKind::Codex, "echo https://auth.example.com/ >&2; sleep 600 & wait");
    EXPECT_FALSE(signIn(AgentKind::Codex, 700ms));
    EXPECT_EQ(m_agents.living(), 0);

    const auto before = m_pages.size();
    CancelSource cancel;
    bool stopped = false;
    const auto follow = [](Task<bool> task, bool &out) -> Task<> {
        try {
            co_await task;
        } catch (const Cancelled &) {
            out = true;
        }
    };
    const auto running = follow(run(AgentKind::Codex, 60s, cancel.token()), stopped);
    test::spinUntil([&] { return m_pages.size() == before + 1; });
    cancel.cancel();
    test::spinUntil([&] { return stopped; });
    EXPECT_EQ(m_agents.living(), 0);
    EXPECT_EQ(m_agents.leftovers(), QStringList());
}

} // namespace
} // namespace vorle
