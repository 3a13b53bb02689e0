#pragma once

#include "agents/AgentKind.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <optional>
#include <string_view>

namespace vorle {

/// What the choice, the search and the run of an agent take from the machine, as a value.
struct AgentEnvironment {
    QProcessEnvironment variables; ///< the app's own; the child inherits them
    QString userHome;
    /// Where package managers put executables for everybody.
    QStringList sharedFolders{QStringLiteral("/opt/homebrew/bin"),
                              QStringLiteral("/usr/local/bin")};

    /// This process's own. Taken after the temporary directory was set (see TemporaryFiles.h), so
    /// that children see it too.
    static AgentEnvironment ofThisProcess();

    /// VORLE_HOME made absolute, when it is set and not empty.
    std::optional<QString> testHome() const;
    /// Where agents and their sign-in files are looked for: `testHome`, else the user's.
    QString home() const { return testHome().value_or(userHome); }

    /// Where the Node that brought an agent is found by it, if it is where no agent would look;
    /// after all other folders.
    QString nodeFolder() const { return home() + QStringLiteral("/.local/state/vorle/node"); }

    /// The variables for a child: these, with what that executable needs to find its tools, and the
    /// agents' own files in `testHome` when there is one, which is made.
    /// @throws std::system_error where it cannot be
    QProcessEnvironment childVariables(const QString &executable) const;
};

enum class AgentReadiness { Ready, SignedOut, Missing };

/// As they are told to machines.
constexpr std::array<std::string_view, 3> rawStrings(AgentReadiness) {
    return {"ready", "signed out", "missing"};
}

/// Which agent to use, where it is, whether it can work. Reads files, writes none, starts nothing;
/// every call looks again, so an agent installed meanwhile is seen. Main thread.
class AgentLocator {
public:
    /// `preferred` gives the user's setting, asked at each choice ("claude", "codex", or anything
    /// else for none).
    AgentLocator(AgentEnvironment environment, std::function<QString()> preferred);

    /// The first that speaks: `forced`, VORLE_AGENT, the user's setting, whichever agent is
    /// ready (Claude Code first), Claude Code.
    AgentKind choose(std::optional<AgentKind> forced = std::nullopt) const;

    /// Where agents are looked for, in that order. Of several Node versions the newest comes first.
    QStringList folders() const;

    /// The path of the agent's executable, or nothing.
    std::optional<QString> locate(AgentKind kind) const;

    /// Signed in means that the agent's own sign-in file is a JSON object that holds the key of an
    /// account: in the home, or where a person's own CODEX_HOME or CLAUDE_CONFIG_DIR has it, which
    /// the agent and its login are handed like all variables.
    AgentReadiness readiness(AgentKind kind) const;

    const AgentEnvironment &environment() const { return m_environment; }

private:
    QStringList signInFiles(AgentKind kind) const;
    bool isSignedIn(AgentKind kind) const;

    AgentEnvironment m_environment;
    std::function<QString()> m_preferred;
};

} // namespace vorle
