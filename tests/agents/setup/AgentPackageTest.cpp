#include "agents/setup/AgentPackage.h"
#include "agents/setup/PackageBefore.h"
#include "agents/setup/SetupError.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <QDir>

#include <gtest/gtest.h>

#include <system_error>

#include <signal.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;

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
                     "[ \"$1\" = --version ] && exit\n"
                     "[ \"$1\" = config ] && echo \"$HOME/npmrc\" && exit\n" +
                         shell);
    }
    /// What becomes of an installation, in a word.
    std::string outcome(AgentKind kind = AgentKind::Codex) const {
        const AgentLocator agents = locator(QStringLiteral("relative:") + path("/tools"));
        try {
            return test::waitFor(installPackage(agents, kind, {})).end == InstallEnd::Checked
                       ? "installed"
                       : "silent";
        } catch (const SetupError &error) {
            return error.description().toStdString();
        } catch (const std::system_error &error) {
            return "refused " + std::to_string(error.code().value());
        }
    }

    /// An npm's text that puts a Codex there that does so.
    static QByteArray links(const QByteArray &shell) {
        return "mkdir -p \"$4/bin\"; cat > \"$4/bin/codex\" <<'end'\n#!/bin/sh\n" + shell +
               "\nend\nchmod 755 \"$4/bin/codex\"";
    }
    /// Installs Codex, and stops that when "begun" is there.
    void stopOnceBegun() const {
        const AgentLocator agents = locator(path("/tools"));
        CancelSource cancel;
        bool stopped = false;
        const auto follow = [](const AgentLocator &from, CancelToken token, bool &out) -> Task<> {
            try {
                co_await installPackage(from, AgentKind::Codex, token);
            } catch (const Cancelled &) {
                out = true;
            }
        };
        const auto running = follow(agents, cancel.token(), stopped);
        test::spinUntil([this] { return QFile::exists(path("/begun")); });
        cancel.cancel();
        test::spinUntil([&] { return stopped; });
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
    QFile::remove(path("/.npm-global/bin/codex"));
    const AgentLocator off = locator(QStringLiteral("/nowhere"));
    const Installed installed = test::waitFor(installPackage(off, AgentKind::Codex, {}));
    EXPECT_EQ(installed.end, InstallEnd::Checked);
    EXPECT_EQ(installed.program, nvm + QStringLiteral("/bin/codex"));
    EXPECT_TRUE(readFile(path("/asked")).contains("--prefix\n" + nvm.toUtf8() + "\n"));
}

TEST_F(AgentPackageTest, the_persons_own_settings_and_place_of_node_do_not_keep_it_from_working) {
    writeProgram(path("/tools/node"), "echo \"$HOME/real/node\"");
    writeProgram(path("/real/node"), "exit 0");
    // Brings a stub unless it is told that scripts may run.
    npm("case \" $* \" in *' --allow-scripts=@openai/codex '*) ;; *) exit 0;; esac\n"
        "case \" $* \" in *' --ignore-scripts=false '*) ;; *) exit 0;; esac\n" +
        links("case \":$PATH:\" in *:$HOME/tools:*) exit 1;; *:$HOME/.local/state/vorle/node:) ;; "
              "*) exit 1;; esac\nnode"));
    EXPECT_EQ(outcome(), "installed");
    EXPECT_EQ(QFileInfo(path("/.local/state/vorle/node/node")).symLinkTarget(), path("/real/node"));

    // Another program of its name comes first where agents are looked for.
    writeProgram(path("/.local/bin/codex"), "exit 0");
    EXPECT_EQ(test::waitFor(installPackage(locator(path("/tools")), AgentKind::Codex, {})).end,
              InstallEnd::Hidden);
}

TEST_F(AgentPackageTest, of_several_npms_and_nodes_those_are_used_that_run) {
    const QString stale = path("/stale");
    const QString node = path("/opt/node/bin");
    // Left behind by a Node that is gone, and one that npm itself put below the prefix.
    writeProgram(stale + QStringLiteral("/npm"), "exec /nowhere/node npm");
    writeProgram(path("/.npm-global/bin/npm"),
                 "[ \"$(node ours)\" = ours ] && exec node \"$@\"; exit 1");
    writeProgram(path("/tools/node"), "exit 1"); // of another machine, say
    EXPECT_EQ(outcome(), "npm does not run");
    // The Node that runs is on a terminal's PATH alone, behind the other.
    writeProgram(node + QStringLiteral("/node"),
                 "case $1 in ours) echo ours; exit;; --version) exit;; esac\n"
                 "[ \"$1\" = -p ] && echo \"$HOME/opt/node/bin/node\" && exit\n"
                 "[ \"$1\" = config ] && exit 1\n[ \"$1\" = install ] || exit 0\n" +
                     links("exec node --version"));
    test::writeFile(path("/broken/node"), "#!/nowhere/sh\n");
    QFile::setPermissions(path("/broken/node"), QFile::ReadOwner | QFile::ExeOwner);
    const AgentLocator agents =
        locator(QStringList{stale, path("/broken"), path("/tools"), node}.join(u':'));
    EXPECT_EQ(test::waitFor(installPackage(agents, AgentKind::Codex, {})).end, InstallEnd::Checked)
        << "it runs from the desktop too";
    EXPECT_EQ(QFileInfo(path("/.local/state/vorle/node/node")).symLinkTarget(),
              node + QStringLiteral("/node"));
    // Which then is what runs npm there.
    EXPECT_EQ(outcome(), "installed");
}

TEST_F(AgentPackageTest, what_was_killed_is_put_back_and_holds_nothing_up) {
    const QString scope = path("/.npm-global/lib/node_modules/@openai");
    const QString codex = path("/.npm-global/bin/codex");
    const auto isWhole = [&] {
        return readFile(codex) == "#!/bin/sh\n# old\n" && QFileInfo(codex).isSymLink() &&
               QDir(scope)
                   .entryList({QStringLiteral(".*")},
                              QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)
                   .isEmpty();
    };
    test::writeProgram(scope + QStringLiteral("/codex/bin/codex.js"), "# old");
    ASSERT_TRUE(QDir().mkpath(path("/.npm-global/bin")));
    ASSERT_TRUE(
        QFile::link(QStringLiteral("../lib/node_modules/@openai/codex/bin/codex.js"), codex));
    const PackageBefore before(path("/.npm-global"), QStringLiteral("@openai/codex"),
                               QStringLiteral("codex"));
    before.keep();
    // As npm is in the middle of it: the old one is aside, the new one half there.
    const auto breakIt = [&] {
        QDir(scope).rename(QStringLiteral("codex"), QStringLiteral(".codex-Ab3dE"));
        test::writeFile(scope + QStringLiteral("/codex/package.json"), "{");
        QFile::remove(codex);
    };
    breakIt();
    const AgentLocator agents = locator(path("/nowhere")); // no npm is needed for it
    EXPECT_TRUE(isInstallationBroken(agents, AgentKind::Codex));
    test::waitFor(mendInstallation(agents, AgentKind::Codex));
    EXPECT_FALSE(isInstallationBroken(agents, AgentKind::Codex));
    EXPECT_TRUE(isWhole());
    // A kill at the very beginning, or the very end, leaves what is of no use.
    for (const char *left : {".new/package/x", ".old/package/x"}) {
        test::writeFile(path("/.npm-global/lib/.vorle-before-codex") + QString::fromUtf8(left), {});
        EXPECT_TRUE(isInstallationBroken(agents, AgentKind::Codex));
        EXPECT_FALSE(test::waitFor(mendInstallation(agents, AgentKind::Codex)));
        EXPECT_FALSE(isInstallationBroken(agents, AgentKind::Codex));
        EXPECT_TRUE(isWhole());
    }
    // Below whichever prefix.
    const QString nvm = path("/.nvm/versions/node/v20.1.0");
    const PackageBefore elsewhere(nvm, QStringLiteral("@openai/codex"), QStringLiteral("codex"));
    writeProgram(nvm + QStringLiteral("/bin/codex"), "# older");
    elsewhere.keep();
    writeProgram(nvm + QStringLiteral("/bin/codex"), "exit 1");
    EXPECT_TRUE(test::waitFor(mendInstallation(agents, AgentKind::Codex)));
    EXPECT_TRUE(readFile(nvm + QStringLiteral("/bin/codex")).contains("# older"));
    ASSERT_TRUE(QDir(path("/.nvm")).removeRecursively());
    // The folders above are gone too.
    before.keep();
    ASSERT_TRUE(QDir(path("/.npm-global/lib/node_modules")).removeRecursively());
    ASSERT_TRUE(QDir(path("/.npm-global/bin")).removeRecursively());
    test::waitFor(mendInstallation(agents, AgentKind::Codex));
    EXPECT_TRUE(isWhole());
    // The person put another one there meanwhile, which works: it stays.
    before.keep();
    breakIt();
    writeProgram(codex, "exit 0");
    test::waitFor(mendInstallation(agents, AgentKind::Codex));
    EXPECT_FALSE(isInstallationBroken(agents, AgentKind::Codex));
    EXPECT_TRUE(readFile(codex).contains("exit 0"));
    QFile::remove(codex);
    ASSERT_TRUE(QDir(scope).removeRecursively());
    test::writeProgram(scope + QStringLiteral("/codex/bin/codex.js"), "# old");
    ASSERT_TRUE(
        QFile::link(QStringLiteral("../lib/node_modules/@openai/codex/bin/codex.js"), codex));
    // Where something refuses to be put back, what works stays as it is.
    before.keep();
    test::writeFile(codex + QStringLiteral(".vorle/x"), "in the way");
    EXPECT_THROW(before.putBack(), std::system_error);
    EXPECT_EQ(readFile(codex), "#!/bin/sh\n# old\n");
    ASSERT_TRUE(QDir(codex + QStringLiteral(".vorle")).removeRecursively());
    before.putBack();
    EXPECT_TRUE(isWhole());
    // The next installation does the same, and fails in its turn.
    before.keep();
    breakIt();
    npm("[ ! -e \"$4/lib/node_modules/@openai/.codex-Ab3dE\" ] && exit 1; touch \"$HOME/aside\"");
    EXPECT_EQ(outcome(), "npm install failed");
    EXPECT_FALSE(QFile::exists(path("/aside"))) << "npm stumbles over what it left";
    EXPECT_TRUE(isWhole());
    // Nothing was there before.
    QFile::remove(codex);
    ASSERT_TRUE(QDir(scope).removeRecursively());
    before.keep();
    test::writeFile(scope + QStringLiteral("/codex/package.json"), "{");
    writeProgram(codex, "exit 1");
    test::waitFor(mendInstallation(agents, AgentKind::Codex));
    EXPECT_FALSE(agents.locate(AgentKind::Codex));
    EXPECT_FALSE(QFile::exists(scope + QStringLiteral("/codex")));
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

TEST_F(AgentPackageTest, an_agent_that_takes_its_time_is_no_broken_one) {
    npm(links("sleep 600"));
    const AgentLocator agents = locator(path("/tools"));
    EXPECT_EQ(test::waitFor(installPackage(agents, AgentKind::Codex, {}, 200ms)).end,
              InstallEnd::Silent);
    EXPECT_TRUE(agents.locate(AgentKind::Codex));
    npm(links("exit 0"));
    EXPECT_EQ(test::waitFor(installPackage(agents, AgentKind::Codex, {})).end, InstallEnd::Checked);
}

TEST_F(AgentPackageTest, a_stop_at_any_moment_leaves_what_was_there_and_nothing_half_done) {
    const QByteArray waits = "; echo $$ > \"$HOME/child\"; echo begun > \"$HOME/begun\"; sleep 600";
    const struct {
        const char *when;
        QByteArray shell; ///< npm's
    } cases[] = {
        {"before it put anything there", "true" + waits},
        {"when it had put the agent there", links("exit 0") + waits},
        {"when it had put half of one there", links("exit 1") + waits},
        {"when it was done and the agent was asked", links("true" + waits)},
    };
    for (const bool wasThere : {false, true}) {
        for (const auto &one : cases) {
            SCOPED_TRACE(one.when);
            QFile::remove(path("/begun"));
            QFile::remove(path("/.npm-global/bin/codex"));
            if (wasThere) {
                writeProgram(path("/.npm-global/bin/codex"), "# old");
            }
            npm(one.shell);
            stopOnceBegun();
            EXPECT_EQ(readFile(path("/.npm-global/bin/codex")),
                      wasThere ? "#!/bin/sh\n# old\n" : "");
            const auto child = pid_t(readFile(path("/child")).trimmed().toLongLong());
            ASSERT_GT(child, 0);
            EXPECT_NE(::kill(child, 0), 0);
            EXPECT_EQ(m_agents.leftovers(), QStringList());
        }
    }
}

} // namespace
} // namespace vorle
