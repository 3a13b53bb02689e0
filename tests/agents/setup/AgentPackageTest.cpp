#include "agents/setup/AgentPackage.h"
#include "agents/setup/SetupError.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <QDir>

#include <gtest/gtest.h>

#include <system_error>

#include <signal.h>

namespace vorle {
namespace {

using test::readFile;
using test::writeProgram;

class AgentPackageTest : public testing::Test {
protected:
    AgentLocator locator(const QString &path) const {
        AgentEnvironment environment = m_agents.environment();
        environment.variables.insert(QStringLiteral("PATH"), path);
        return {environment, nullptr};
    }
    QString path(const char *name) const { return m_agents.home() + QString::fromUtf8(name); }
    /// An npm that does so when it is to install.
    void npm(const QByteArray &shell, const QString &folder = {}) const {
        writeProgram((folder.isEmpty() ? path("/tools") : folder) + QStringLiteral("/npm"),
                     "case \"$1\" in config) echo \"$HOME/npmrc\"; exit;;\n"
                     "uninstall) rm \"$4/bin/codex\"; exit;; esac\n" +
                         shell);
    }
    /// What becomes of an installation, in a word.
    std::string outcome(AgentKind kind = AgentKind::Codex) const {
        const AgentLocator agents = locator(QStringLiteral("relative:") + path("/tools"));
        try {
            test::waitFor(installPackage(agents, kind, {}));
            return "installed";
        } catch (const SetupError &error) {
            return error.description().toStdString();
        } catch (const std::system_error &error) {
            return "refused " + std::to_string(error.code().value());
        }
    }

    test::ScriptedAgent m_agents;
};

/// Does as npm with a prefix does, for whichever package.
const QByteArray works = "printf '%s\\n' \"$@\" > \"$HOME/asked\"; pwd > \"$HOME/where\"\n"
                         "mkdir -p \"$4/bin\"\nfor last; do :; done\n"
                         "case \"$last\" in *codex) n=codex;; *) n=claude;; esac\n"
                         "printf '#!/bin/sh\\n' > \"$4/bin/$n\"; chmod 755 \"$4/bin/$n\"";

TEST_F(AgentPackageTest, npm_brings_the_agents_where_they_are_looked_for) {
    EXPECT_EQ(outcome(), "npm not found");
    npm(works);
    EXPECT_EQ(outcome(), "installed");
    test::writeFile(path("/npmrc"), "proxy=none"); // the machine's own settings
    EXPECT_EQ(outcome(AgentKind::Claude), "installed");
    const QByteArray asked = readFile(path("/asked"));
    EXPECT_TRUE(asked.startsWith("install\n-g\n--prefix\n" + path("/.npm-global").toUtf8() + "\n"))
        << asked.toStdString();
    EXPECT_TRUE(asked.contains("\n--globalconfig\n" + path("/npmrc").toUtf8() + "\n"));
    EXPECT_TRUE(asked.endsWith("\n@anthropic-ai/claude-code\n")) << asked.toStdString();
    EXPECT_TRUE(readFile(path("/where")).contains("/vorle-install-"));
    EXPECT_EQ(m_agents.leftovers(), QStringList());

    // A Node of nvm's: off the PATH, and its agents stand beside it.
    const QString nvm = path("/.nvm/versions/node/v22.3.0");
    npm(works, nvm + QStringLiteral("/bin"));
    const AgentLocator off = locator(QStringLiteral("/nowhere"));
    ASSERT_EQ(npmProgram(off), nvm + QStringLiteral("/bin/npm"));
    test::waitFor(installPackage(off, AgentKind::Codex, {}));
    EXPECT_TRUE(readFile(path("/asked")).contains("--prefix\n" + nvm.toUtf8() + "\n"));
}

TEST_F(AgentPackageTest, whatever_npm_does_instead_is_told) {
    const struct {
        const char *shell;
        std::string outcome;
    } cases[] = {
        {"echo 'npm error code E404' >&2; exit 1", "npm install failed"},
        {"exit 0", "npm install failed"}, // and nothing is there
        {"mkdir -p \"$4/bin\"; printf '#!/bin/sh\\nexit 1\\n' > \"$4/bin/codex\"\n"
         "chmod 755 \"$4/bin/codex\"",
         "npm install failed"}, // what is there does not run
        {"kill -9 $$", "npm install failed"},
        {"echo 'npm error code ENOSPC' >&2; exit 228", "refused " + std::to_string(ENOSPC)},
        {"echo 'npm ERR! code EACCES' >&2; exit 243", "refused " + std::to_string(EACCES)},
        {"head -c 60000000 /dev/zero; sleep 600", "npm install failed"}, // it floods the disk
        {"head -c 20000000 /dev/urandom >&2; exit 1", "npm install failed"},
    };
    for (const auto &one : cases) {
        npm(one.shell);
        EXPECT_EQ(outcome(), one.outcome) << one.shell;
        EXPECT_FALSE(QFile::exists(path("/.npm-global/bin/codex"))) << one.shell;
        EXPECT_EQ(m_agents.leftovers(), QStringList());
    }
}

TEST_F(AgentPackageTest, a_stop_ends_npm_and_all_that_it_started) {
    npm("sleep 600 & echo $! > \"$HOME/child\"; echo begun > \"$HOME/begun\"; wait");
    const AgentLocator agents = locator(path("/tools"));
    CancelSource cancel;
    bool stopped = false;
    const auto follow = [](const AgentLocator &locator, CancelToken token, bool &out) -> Task<> {
        try {
            co_await installPackage(locator, AgentKind::Codex, token);
        } catch (const Cancelled &) {
            out = true;
        }
    };
    const auto running = follow(agents, cancel.token(), stopped);
    test::spinUntil([this] { return QFile::exists(path("/begun")); });
    cancel.cancel();
    test::spinUntil([&] { return stopped; });
    const auto child = pid_t(readFile(path("/child")).trimmed().toLongLong());
    ASSERT_GT(child, 0);
    EXPECT_NE(::kill(child, 0), 0);
    EXPECT_EQ(m_agents.leftovers(), QStringList());
}

} // namespace
} // namespace vorle
