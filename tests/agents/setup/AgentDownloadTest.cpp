// What a Mac does, tried with a stand-in for its check of signatures and a server on this machine.

#include "agents/setup/AgentSetup.h"
#include "base/HttpClient.h"
#include "base/Log.h"
#include "platform/fakes/FakeSignatureCheck.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSemaphore>

#include <gtest/gtest.h>

#include <system_error>

namespace vorle {
namespace {

using test::readFile;
using test::TestReply;
using test::writeFile;

const QByteArray program = "#!/bin/sh\n# signed by the right team\necho new\n";

class AgentDownloadTest : public testing::Test {
protected:
    AgentDownloadTest() {
        sources.codexReleases = m_server.url("/latest/download/", QStringLiteral("localhost"));
        sources.claudeScript = m_server.url("/install.sh", QStringLiteral("localhost"));
    }

    /// What this Python makes of `archive`, a tarfile that is written to.
    QByteArray archive(const QByteArray &python) {
        const QString path = m_folder.filePath(QStringLiteral("made.tar.gz"));
        const QString script =
            QStringLiteral("import io, os, sys, tarfile\n"
                           "archive = tarfile.open(sys.argv[1], 'w:gz')\n"
                           "outside = sys.argv[2]\n"
                           "def add(name, kind=tarfile.REGTYPE, text=b'', link='', mode=0o755):\n"
                           "    info = tarfile.TarInfo(name)\n"
                           "    info.type, info.size, info.linkname = kind, len(text), link\n"
                           "    info.mode = mode\n"
                           "    archive.addfile(info, io.BytesIO(text))\n"
                           "program = b'''") +
            QString::fromUtf8(program) + QStringLiteral("'''\nname = '%1'\n").arg(build) +
            QString::fromUtf8(python) + QStringLiteral("\narchive.close()\n");
        QProcess maker;
        maker.start(QStringLiteral("python3"), {QStringLiteral("-c"), script, path, outside()});
        EXPECT_TRUE(maker.waitForFinished() && maker.exitCode() == 0)
            << maker.readAllStandardError().toStdString();
        return readFile(path);
    }
    static TestReply refusal(int status, const QByteArray &body = {}) {
        TestReply reply = TestReply::page(body);
        reply.status = status;
        return reply;
    }
    void serve(const TestReply &reply) {
        m_server.serve("/latest/download/" + build.toLatin1() + ".tar.gz", reply);
    }
    /// A file of the user's that nothing may touch.
    QString outside() const { return m_folder.filePath(QStringLiteral("outside")); }
    QString codex() const { return m_agents.home() + QStringLiteral("/.local/bin/codex"); }
    QString claude() const { return m_agents.home() + QStringLiteral("/.local/bin/claude"); }

    Task<Installed> install(AgentKind kind = AgentKind::Codex, CancelToken cancel = {}) {
        m_setup.emplace(AgentSetup::Parts{
            m_locator, OnDemand<HttpClient>([this]() -> auto & { return m_http; }), &m_signatures,
            sources});
        return m_setup->install(
            kind, [this](const DownloadProgress &progress) { m_progress += progress; }, cancel);
    }
    /// What becomes of an installation, in a word.
    std::string outcome(AgentKind kind = AgentKind::Codex, CancelToken cancel = {}) {
        try {
            return test::waitFor(install(kind, cancel)).end == InstallEnd::Checked ? "installed"
                                                                                   : "silent";
        } catch (const SetupError &error) {
            return error.description().toStdString();
        } catch (const std::system_error &) {
            return "refused";
        } catch (const Cancelled &) {
            return "stopped";
        }
    }

    const QString build = QStringLiteral("codex-aarch64-apple-darwin");
    QTemporaryDir m_folder;
    test::ScriptedAgent m_agents;
    AgentLocator m_locator{m_agents.environment(), nullptr};
    test::TestServer m_server;
    HttpClient m_http{true};
    test::FakeSignatureCheck m_signatures;
    AgentSources sources;
    std::optional<AgentSetup> m_setup;
    QList<DownloadProgress> m_progress;
};

TEST_F(AgentDownloadTest, codex_is_checked_before_it_takes_the_place_of_the_one_that_is_there) {
    const QByteArray whole = archive("add(name, text=program + b'#' * 900_000)");
    serve(TestReply::page(whole));
    m_signatures.onCheck = [this] { EXPECT_FALSE(QFile::exists(codex())); };
    ASSERT_EQ(outcome(), "installed");
    EXPECT_TRUE(readFile(codex()).startsWith(program));
    EXPECT_EQ(m_locator.readiness(AgentKind::Codex), AgentReadiness::SignedOut);
    ASSERT_FALSE(m_progress.isEmpty());
    EXPECT_EQ(m_progress.last().received, whole.size());
    EXPECT_EQ(m_progress.last().expected, whole.size());
    EXPECT_TRUE(recentLogLines().contains(QStringLiteral("installing Codex")));

    // Nothing else comes out of the archive, however much it is.
    sources.maxProgram = 1'000'000;
    m_signatures.onCheck = [this] {
        const QDir work(m_agents.temporary() + u'/' + m_agents.leftovers().value(0));
        EXPECT_EQ(work.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 2);
    };
    serve(TestReply::page(archive("add('other', text=b'x' * 3_000_000)\n"
                                  "add('link', tarfile.SYMTYPE, link=outside)\n"
                                  "add('way/in', text=b'x')\nadd(name, text=program)")));
    EXPECT_EQ(outcome(), "installed");

    m_signatures.onCheck = nullptr;
    writeFile(codex(), "an old one");
    serve(TestReply::redirect("/elsewhere"));
    m_server.serve("/elsewhere", TestReply::page(whole));
    EXPECT_EQ(outcome(), "installed");
    EXPECT_TRUE(readFile(codex()).startsWith(program));
    EXPECT_EQ(m_agents.leftovers(), QStringList());
    EXPECT_EQ(AgentSources::forProcessor(QStringLiteral("arm64")).codexBuild, build);
    EXPECT_EQ(AgentSources::forProcessor(QStringLiteral("x86_64")).codexBuild,
              QStringLiteral("codex-x86_64-apple-darwin"));
}

TEST_F(AgentDownloadTest, whatever_fails_leaves_the_old_codex_and_nothing_else) {
    writeFile(codex(), "an old one");
    writeFile(outside(), "a file of the user's");
    const QByteArray good = archive("add(name, text=program)");
    sources.maxProgram = 300'000;
    const struct {
        const char *what;
        TestReply reply;
        const char *outcome;
    } cases[] = {
        {"no such release", refusal(404, good), "download failed"},
        {"the server is down", refusal(503), "download failed"},
        {"nothing", TestReply::page({}), "download failed"},
        {"cut short",
         TestReply::shaped(TestReply::Shape::Raw,
                           "HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\n" + good.first(100)),
         "download failed"},
        {"half an archive", TestReply::page(good.first(good.size() / 2)), "tar failed"},
        {"a network's own page", TestReply::page("<html>Sign in to the network"), "tar failed"},
        {"somebody else's signature", TestReply::page(archive("add(name, text=b'#!/bin/sh')")),
         "not signed by OpenAI"},
        {"no program in it", TestReply::page(archive("add('README', text=program)")), "tar failed"},
        {"a link to a file of the user's",
         TestReply::page(archive("add(name, tarfile.SYMTYPE, link=outside)")), "tar failed"},
        {"another name of one",
         TestReply::page(archive("add(name, tarfile.LNKTYPE, link=outside)")), "tar failed"},
        {"two names of the program",
         TestReply::page(
             archive("add('other', text=program)\nadd(name, tarfile.LNKTYPE, link='other')")),
         "tar failed"},
        {"more than any program of ours",
         TestReply::page(archive("add(name, text=program * 9000)")), "tar failed"},
        {"a folder by that name", TestReply::page(archive("add(name + '/x', text=program)")),
         "tar failed"},
        {"a folder that nobody may enter, and no program",
         TestReply::page(
             archive("add('shut/in', text=b'x')\nadd('shut', tarfile.DIRTYPE, mode=0)")),
         "tar failed"},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.what);
        serve(one.reply);
        EXPECT_EQ(outcome(), one.outcome);
        EXPECT_EQ(readFile(codex()), "an old one");
        EXPECT_EQ(readFile(outside()), "a file of the user's");
        EXPECT_EQ(m_agents.leftovers(), QStringList());
    }
    // Paths that lead out of the folder.
    serve(TestReply::page(archive("add('../../stray', text=b'x')\nadd(outside + '-2', text=b'x')\n"
                                  "add('way', tarfile.SYMTYPE, "
                                  "link=os.path.dirname(outside))\nadd('way/outside', text=b'x')\n"
                                  "add(name, text=b'unsigned')")));
    EXPECT_NE(outcome(), "installed");
    EXPECT_EQ(readFile(outside()), "a file of the user's");
    EXPECT_FALSE(QFile::exists(outside() + QStringLiteral("-2")));
    EXPECT_EQ(m_agents.leftovers(), QStringList());
    // No network at all, a bad address, and a full disk.
    serve(TestReply::page(archive("add(name, text=program + os.urandom(200_000))")));
    test::withFileSizeLimit(50'000, [this] { EXPECT_EQ(outcome(), "refused"); });
    sources.codexReleases = QUrl(QStringLiteral("http://localhost:1/"));
    EXPECT_EQ(outcome(), "download failed");
    sources.codexReleases = QUrl(QStringLiteral("http://example.com/")); // not over https
    EXPECT_EQ(outcome(), "download failed");
    sources.codexReleases = QUrl(QStringLiteral("file:///etc/passwd"));
    EXPECT_EQ(outcome(), "download failed");
    EXPECT_EQ(readFile(codex()), "an old one");
    EXPECT_EQ(m_agents.leftovers(), QStringList());
}

TEST_F(AgentDownloadTest, is_stopped_at_each_of_its_steps_and_leaves_the_old_codex) {
    writeFile(codex(), "an old one");
    const QByteArray good = archive("add(name, text=program)");
    const auto stopWhen = [this](const std::function<bool()> &reached) {
        CancelSource cancel;
        const auto running = install(AgentKind::Codex, cancel.token());
        std::string ended;
        const auto follow = [](const Task<Installed> &task, std::string &out) -> Task<> {
            try {
                co_await task;
                out = "installed";
            } catch (const Cancelled &) {
                out = "stopped";
            } catch (const std::exception &error) {
                out = error.what();
            }
        };
        const auto following = follow(running, ended);
        test::spinUntil(reached);
        EXPECT_EQ(m_agents.leftovers().size() > 0, true);
        cancel.cancel();
        test::spinUntil([&] { return !ended.empty(); });
        EXPECT_EQ(ended, "stopped");
        EXPECT_EQ(readFile(codex()), "an old one");
        EXPECT_EQ(m_agents.leftovers(), QStringList());
    };
    serve(TestReply::shaped(TestReply::Shape::Endless, QByteArray(10'000, 'x')));
    stopWhen([this] { return !m_progress.isEmpty(); });
    serve(TestReply::shaped(TestReply::Shape::Silent));
    stopWhen([this] { return m_server.requests().size() >= 2; });

    serve(TestReply::page(good));
    sources.tar = m_folder.filePath(QStringLiteral("slow-tar"));
    const QString begun = m_folder.filePath(QStringLiteral("begun"));
    test::writeProgram(sources.tar, "touch '" + begun.toUtf8() + "'; sleep 600 & wait");
    stopWhen([begun] { return QFile::exists(begun); });

    sources.tar = QStringLiteral("/usr/bin/tar");
    QSemaphore asked;
    QSemaphore goOn;
    m_signatures.onCheck = [&] {
        asked.release();
        goOn.acquire();
    };
    stopWhen([&] {
        const bool reached = asked.tryAcquire();
        if (reached) {
            goOn.release();
        }
        return reached;
    });
    m_signatures.onCheck = nullptr;
    EXPECT_EQ(outcome(), "installed");
}

TEST_F(AgentDownloadTest, claude_code_is_installed_by_its_own_script) {
    const QByteArray asWanted =
        "#!/bin/bash\nset -e\nmkdir -p \"$HOME/.local/bin\"\n"
        "printf '#!/bin/sh\\n# %s' \"$PATH\" > \"$HOME/.local/bin/claude\"\n"
        "chmod 755 \"$HOME/.local/bin/claude\"\necho done\n";
    const struct {
        const char *what;
        TestReply reply;
        const char *outcome;
    } cases[] = {
        {"no answer", refusal(500, asWanted), "download failed"},
        {"a network's own page", TestReply::page("<html>Sign in"), "download failed"},
        {"cut short",
         TestReply::shaped(TestReply::Shape::Raw,
                           "HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\n" + asWanted),
         "download failed"},
        {"it fails", TestReply::page("#!/bin/bash\nexit 3\n"), "install.sh failed"},
        {"it installs nothing", TestReply::page("#!/bin/bash\n"), "install.sh failed"},
        {"it does", TestReply::page(asWanted), "installed"},
    };
    for (const auto &one : cases) {
        SCOPED_TRACE(one.what);
        m_server.serve("/install.sh", one.reply);
        EXPECT_FALSE(QFile::exists(claude()));
        EXPECT_EQ(outcome(AgentKind::Claude), one.outcome);
        EXPECT_EQ(m_agents.leftovers(), QStringList());
    }
    const QByteArray path = readFile(claude());
    EXPECT_TRUE(path.contains("/usr/local/bin:/usr/bin:/bin")) << path.toStdString();
}

} // namespace
} // namespace vorle
