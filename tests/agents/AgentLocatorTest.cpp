#include "agents/AgentLocator.h"
#include "tests/support/ScriptedAgent.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::ScriptedAgent;
using test::writeFile;
using test::writeProgram;

AgentLocator locatorIn(const ScriptedAgent &agents, const QString &setting = {},
                       const QString &variable = {}) {
    AgentEnvironment environment = agents.environment();
    if (!variable.isEmpty()) {
        environment.variables.insert(QStringLiteral("VORLE_AGENT"), variable);
    }
    return {environment, [setting] { return setting; }};
}

TEST(AgentLocator, tries_the_folders_in_their_order_and_takes_executable_files_alone) {
    const ScriptedAgent agents;
    const AgentLocator locator = locatorIn(agents);
    EXPECT_EQ(locator.locate(AgentKind::Claude), std::nullopt);

    // From the last folder tried to the first: each one placed must win over those before.
    const QString home = agents.home();
    const QString nvm = home + QStringLiteral("/.nvm/versions/node/");
    const QStringList folders{
        nvm + QStringLiteral("v9.11.2/bin"),       nvm + QStringLiteral("v22.3.0/bin"),
        home + QStringLiteral("/.volta/bin"),      home + QStringLiteral("/.claude/local"),
        home + QStringLiteral("/.npm-global/bin"), agents.environment().sharedFolders.first(),
        home + QStringLiteral("/.local/bin")};
    for (const QString &folder : folders) {
        const QString path = folder + QStringLiteral("/claude");
        writeFile(path, "no executable");
        EXPECT_NE(locator.locate(AgentKind::Claude), path);
        writeProgram(path, "");
        EXPECT_EQ(locator.locate(AgentKind::Claude), path);
    }
    EXPECT_EQ(locator.locate(AgentKind::Codex), std::nullopt);
    QDir().mkpath(home + QStringLiteral("/.local/bin/codex")); // executable, but a folder
    EXPECT_EQ(locator.locate(AgentKind::Codex), std::nullopt);
}

TEST(AgentLocator, counts_an_agent_as_signed_in_only_when_its_file_shows_an_account) {
    const ScriptedAgent agents;
    const AgentLocator locator = locatorIn(agents);
    agents.signIn(AgentKind::Claude);
    EXPECT_EQ(locator.readiness(AgentKind::Claude), AgentReadiness::Missing);
    agents.install(AgentKind::Claude, "");
    agents.install(AgentKind::Codex, "");
    EXPECT_EQ(locator.readiness(AgentKind::Claude), AgentReadiness::Ready);
    EXPECT_EQ(locator.readiness(AgentKind::Codex), AgentReadiness::SignedOut);

    const std::pair<QByteArray, bool> cases[] = {
        {R"({"a": [1, {"tokens": 1}], "tokens": {"id": "x"}, "b": 2})", true},
        {R"({"\u0074okens": "text"})", true},
        {R"({"tokens": null})", true},
        {R"({"a": {"tokens": {}}})", false},
        {R"([{"tokens": {}}])", false},
        {R"({"tokens": {}, "cut)", false},
        {R"({"tokens": {"id": 1})", false},
        {"tokens", false},
        {"", false},
        {QByteArray(5000, '[') + QByteArray(5000, ']'), false},
    };
    const QString file = agents.home() + QStringLiteral("/.codex/auth.json");
    for (const auto &[content, signedIn] : cases) {
        writeFile(file, content);
        EXPECT_EQ(locator.readiness(AgentKind::Codex) == AgentReadiness::Ready, signedIn)
            << content.left(60).toStdString();
    }
    QFile::remove(file);
    QDir().mkpath(file);
    EXPECT_EQ(locator.readiness(AgentKind::Codex), AgentReadiness::SignedOut);
}

TEST(AgentLocator, lets_the_most_particular_choice_win) {
    const ScriptedAgent agents;
    const QString claude = QStringLiteral("claude");
    const QString codex = QStringLiteral("codex");
    EXPECT_EQ(locatorIn(agents, codex, codex).choose(AgentKind::Claude), AgentKind::Claude);
    EXPECT_EQ(locatorIn(agents, codex, claude).choose(), AgentKind::Claude);
    EXPECT_EQ(locatorIn(agents, codex, QStringLiteral("Claude")).choose(), AgentKind::Codex);
    EXPECT_EQ(locatorIn(agents, QStringLiteral("other")).choose(), AgentKind::Claude);

    agents.install(AgentKind::Codex, "");
    agents.install(AgentKind::Claude, "");
    EXPECT_EQ(locatorIn(agents).choose(), AgentKind::Claude);
    agents.signIn(AgentKind::Codex);
    EXPECT_EQ(locatorIn(agents).choose(), AgentKind::Codex);
    EXPECT_EQ(locatorIn(agents, claude).choose(), AgentKind::Claude);
    agents.signIn(AgentKind::Claude);
    EXPECT_EQ(locatorIn(agents).choose(), AgentKind::Claude);
}

TEST(AgentLocator, a_relative_test_home_is_made_absolute_and_an_empty_one_ignored) {
    AgentEnvironment environment;
    environment.userHome = QStringLiteral("/home/someone");
    environment.variables.insert(QStringLiteral("VORLE_HOME"), QString());
    EXPECT_EQ(environment.home(), QStringLiteral("/home/someone"));
    environment.variables.insert(QStringLiteral("VORLE_HOME"), QStringLiteral("here"));
    EXPECT_EQ(environment.home(), QDir::currentPath() + QStringLiteral("/here"));
}

} // namespace
} // namespace vorle
