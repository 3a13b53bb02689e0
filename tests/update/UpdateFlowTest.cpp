// The program itself, installed as people have it, from one version to the next.

#include "storage/StoreLock.h"
#include "tests/core/Samples.h"
#include "tests/support/Program.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"
#include "tests/update/ReleaseMaker.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <utility>

namespace vorle {
namespace {

using test::ReleaseMaker;

class UpdateFlowTest : public testing::Test {
protected:
    UpdateFlowTest() {
        program.environment.insert(QStringLiteral("VORLE_UPDATE_FEED"),
                                   server.link("/appcast.xml"));
        program.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        program.environment.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
    }

    QString folder() const { return program.path("app"); }
    static QString built(const char *version) {
        return QStringLiteral(VORLE_BINARIES "/updates/vorle-") + QString::fromUtf8(version);
    }
    void install() {
        QDir(folder()).removeRecursively();
        const QString bin = folder() + QStringLiteral("/versions/0.1.0/bin");
        ASSERT_TRUE(QDir().mkpath(bin));
        ASSERT_TRUE(QFile::copy(built("0.1.0"), bin + QStringLiteral("/vorle")));
        ASSERT_TRUE(QFile::copy(QStringLiteral(VORLE_BINARIES "/vorle-guard"),
                                bin + QStringLiteral("/vorle-guard")));
        test::writeFile(folder() + QStringLiteral("/versions/0.1.0/version"), "0.1.0\n");
        ASSERT_TRUE(
            QFile::link(QStringLiteral("versions/0.1.0"), folder() + QStringLiteral("/current")));
        ASSERT_TRUE(QFile::copy(QStringLiteral(VORLE_BINARIES "/vorle-launcher"),
                                folder() + QStringLiteral("/vorle")));
    }
    /// The next version as it is published.
    static QByteArray next() {
        return ReleaseMaker::packed(
            {{"version", "0.2.0\n"},
             {"bin/vorle", test::readFile(built("0.2.0")), true},
             {"bin/vorle-guard", test::readFile(QStringLiteral(VORLE_BINARIES "/vorle-guard")),
              true}});
    }
    /// How often it is killed: as the variable says, or so often.
    static int killsWanted(int usual) {
        const int wanted = qEnvironmentVariableIntValue("VORLE_UPDATE_KILLS");
        return wanted > 0 ? wanted : usual;
    }
    /// Where a link of the folder leads; "" where there is none.
    QString linked(const char *name) const {
        return QFileInfo(QFileInfo(folder() + u'/' + QString::fromUtf8(name)).symLinkTarget())
            .fileName();
    }
    /// Kills whatever runs from the folder, all at once, as a power cut would.
    void cutPower() const {
        for (bool any = true; any;) {
            any = false;
            const QStringList all = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
            for (const QString &process : all) {
                const QString file =
                    QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(process));
                if (process.toInt() > 1 && file.startsWith(folder() + u'/')) {
                    any = ::kill(process.toInt(), SIGKILL) == 0 || any;
                }
            }
        }
    }
    void waitForEnd(const QProcess &process) {
        test::spinUntil([&] { return process.state() == QProcess::NotRunning; });
    }
    void publish(const QByteArray &archive) {
        server.serve("/appcast.xml",
                     test::TestReply::page(ReleaseMaker::feed(ReleaseMaker::item(
                         "0.2.0", "vorle.tar.gz", archive.size(), maker.sign(archive)))));
        server.serve("/vorle.tar.gz", test::TestReply::page(archive));
    }
    QProcess &start(const QStringList &words) {
        QProcess &process = program.command(words);
        process.setProgram(folder() + QStringLiteral("/vorle"));
        process.setChildProcessModifier([] { ::setpgid(0, 0); }); // to be told together
        process.start();
        return process;
    }
    /// The server answers meanwhile.
    test::Program::Outcome run(const QStringList &words) {
        QProcess &process = start(words);
        test::spinUntil([&] { return process.state() == QProcess::NotRunning; },
                        std::chrono::seconds(60));
        return test::Program::end(process);
    }
    /// Which version's app is open; "" while none answers.
    QString openVersion() {
        const auto told = run({QStringLiteral("diagnostic"), QStringLiteral("--json")}).object();
        return told.value(u"surface").toString() == u"app" ? told.value(u"version").toString()
                                                           : QString();
    }

    test::Program program;
    test::TestServer server;
    ReleaseMaker maker{ReleaseMaker::Key::OfTestPrograms};
};

TEST_F(UpdateFlowTest, one_version_finds_the_next_and_comes_back_as_it) {
    install();
    publish(next());
    program.save({test::sampleTopic(QStringLiteral("Un sujet")),
                  test::sampleTopic(QStringLiteral("Gardé"), TopicStatus::Program)});
    const QByteArray topics = test::readFile(program.topicsFile());

    EXPECT_EQ(run({QStringLiteral("mise-a-jour")}).out,
              "vorle 0.2.0 est là. Pour l’installer : vorle mise-a-jour --installer\n");
    QProcess &app = start({});
    test::spinUntil([this] { return openVersion() == u"0.1.0"; });
    QFile version(folder() + QStringLiteral("/versions/0.1.0/version"));
    ASSERT_TRUE(version.open(QIODevice::ReadOnly));
    EXPECT_NE(::flock(version.handle(), LOCK_EX | LOCK_NB), 0) << "a process runs from there";

    // What goes on is not broken off for it.
    program.agent.answerBy(R"({"brief":"hang"})");
    QProcess &writing = start(
        {QStringLiteral("fiche"), program.topics().first().id.toString(QUuid::WithoutBraces)});
    test::spinUntil([this] { return program.agent.calls(u"brief") == 1; });
    const auto waits = run({QStringLiteral("mise-a-jour"), QStringLiteral("--installer")});
    EXPECT_THAT(waits.out,
                testing::HasSubstr("en train d’être écrite\u00A0: je ne me relance pas"));
    EXPECT_EQ(writing.state(), QProcess::Running);
    EXPECT_EQ(openVersion(), QStringLiteral("0.1.0"));
    ::kill(static_cast<pid_t>(writing.processId()), SIGINT);
    test::spinUntil([&] { return writing.state() == QProcess::NotRunning; });

    const auto installed = run({QStringLiteral("mise-a-jour"), QStringLiteral("--installer")});
    EXPECT_EQ(installed.status, 0) << installed.err;
    test::spinUntil([this] { return openVersion() == u"0.2.0"; });
    EXPECT_EQ(app.state(), QProcess::Running) << "it went on as the new one";
    EXPECT_EQ(test::readFile(program.topicsFile()), topics);
    test::spinUntil(
        [this] { return !QFileInfo(folder() + QStringLiteral("/previous")).isSymLink(); });
    EXPECT_EQ(run({QStringLiteral("mise-a-jour")}).out, "0.2.0 est la dernière version.\n");

    // As a session does that ends: the app is told, and the launcher, which hands it on.
    ::kill(-static_cast<pid_t>(app.processId()), SIGTERM);
    test::spinUntil([&] { return app.state() == QProcess::NotRunning; });
    EXPECT_EQ(app.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(app.exitCode(), 0);
    EXPECT_EQ(run({QStringLiteral("--version")}).out, "vorle 0.2.0\n");
    EXPECT_EQ(test::readFile(program.topicsFile()), topics);
}

TEST_F(UpdateFlowTest, what_an_app_left_ready_is_installed_from_the_terminal) {
    install();
    test::writeProgram(folder() + QStringLiteral("/versions/0.2.0/bin/vorle"), "echo vorle 0.2.0");
    ASSERT_TRUE(QFile::link(QStringLiteral("versions/0.2.0"), folder() + QStringLiteral("/next")));
    const QString command = QStringLiteral("mise-a-jour");
    EXPECT_EQ(run({command}).out,
              "vorle 0.2.0 est prête. Pour l’installer : vorle mise-a-jour --installer\n");
    const QString inTheWay = folder() + QStringLiteral("/previous");
    ASSERT_TRUE(QDir().mkpath(inTheWay)); // the disk refuses the link
    const auto refused = run({command, QStringLiteral("--installer")});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, testing::HasSubstr("La mise à jour n’a pas pu s’installer. vorle "
                                                "reste dans sa version actuelle."));
    EXPECT_EQ(test::readFile(folder() + QStringLiteral("/unplaced")), "0.2.0");
    ASSERT_TRUE(QDir().rmdir(inTheWay));
    EXPECT_EQ(run({command, QStringLiteral("--installer")}).out, "vorle 0.2.0 est installée.\n");
    EXPECT_EQ(run({QStringLiteral("--version")}).out, "vorle 0.2.0\n");
}

TEST_F(UpdateFlowTest, who_never_opens_a_window_goes_back_to_what_worked_last) {
    publish(ReleaseMaker::packed(ReleaseMaker::entries("0.2.0")));
    for (const bool crashed : {false, true}) {
        install();
        test::writeProgram(folder() + QStringLiteral("/versions/0.0.9/bin/vorle"), "exit 1");
        ASSERT_TRUE(
            QFile::link(QStringLiteral("versions/0.0.9"), folder() + QStringLiteral("/previous")));
        test::writeFile(folder() + QStringLiteral("/starts"), crashed ? "x" : "");
        EXPECT_EQ(run({QStringLiteral("mise-a-jour"), QStringLiteral("--installer")}).out,
                  "vorle 0.2.0 est installée.\n");
        EXPECT_EQ(
            QFileInfo(QFile::symLinkTarget(folder() + QStringLiteral("/previous"))).fileName(),
            crashed ? QStringLiteral("0.0.9") : QStringLiteral("0.1.0"));
    }
}

TEST_F(UpdateFlowTest, a_new_version_that_waits_for_a_command_says_that_it_does_not_hang) {
    install();
    ASSERT_TRUE(
        QFile::link(QStringLiteral("versions/0.0.9"), folder() + QStringLiteral("/previous")));
    const QString answers = folder() + QStringLiteral("/answers");
    program.save({test::sampleTopic(QStringLiteral("Gardé"), TopicStatus::Program)});
    StoreLock command(program.topicsFile());
    ASSERT_TRUE(command.tryLock());
    QProcess &app = start({});
    test::spinUntil([&] { return QFile::exists(answers); });
    EXPECT_FALSE(linked("previous").isEmpty()) << "it has not opened yet";
    command.release();
    test::spinUntil([&] { return linked("previous").isEmpty() && !QFile::exists(answers); });
    ::kill(-static_cast<pid_t>(app.processId()), SIGTERM);
    waitForEnd(app);
    EXPECT_EQ(app.exitCode(), 0);
}

TEST_F(UpdateFlowTest, killed_at_any_moment_one_of_the_two_starts) {
    const int kills = killsWanted(8);
    publish(ReleaseMaker::packed(ReleaseMaker::entries("0.2.0") +
                                 QList<test::ArchiveEntry>{{"big", QByteArray(400'000, 'x')}}));
    const QStringList words{QStringLiteral("mise-a-jour"), QStringLiteral("--installer")};
    install();
    QElapsedTimer whole;
    whole.start();
    ASSERT_EQ(run(words).out, "vorle 0.2.0 est installée.\n");
    const int usual = static_cast<int>(whole.elapsed());
    install();
    int old = 0;
    for (int kill = 0; kill < kills; ++kill) {
        QProcess &update = start(words);
        const int moment = QRandomGenerator::global()->bounded(usual + 1);
        SCOPED_TRACE("killed after " + std::to_string(moment) + " of " + std::to_string(usual));
        QTimer::singleShot(moment, &update, &QProcess::kill);
        test::spinUntil([&] { return update.state() == QProcess::NotRunning; });
        const std::string starts = run({QStringLiteral("--version")}).out;
        EXPECT_THAT(starts, testing::AnyOf("vorle 0.1.0\n", "vorle 0.2.0\n"));
        if (starts == "vorle 0.1.0\n") { // goes on with what the last one left
            ++old;
        } else {
            install();
        }
    }
    RecordProperty("old", old);
    // And what the kills left holds nothing up.
    if (run({QStringLiteral("--version")}).out == "vorle 0.1.0\n") {
        EXPECT_EQ(run(words).status, 0);
    }
    EXPECT_EQ(run({QStringLiteral("--version")}).out, "vorle 0.2.0\n");
}

/// The app itself: at its end, when it puts the new version in its place; while it goes on as that;
/// and while that opens for the first time.
TEST_F(UpdateFlowTest, killed_while_it_relaunches_one_of_the_two_opens_with_all_its_topics) {
    publish(next());
    program.save({test::sampleTopic(QStringLiteral("Gardé"), TopicStatus::Program)});
    const QByteArray topics = test::readFile(program.topicsFile());
    const std::array<std::function<bool()>, 3> moments{
        [this] { return linked("next") == u"0.2.0"; },
        [this] { return linked("current") == u"0.2.0"; },
        [this] { return QFile::exists(folder() + QStringLiteral("/starts")); }};
    constexpr int longest = 400; // ms: about what each of them takes
    int old = 0;
    for (int kill = 0; kill < killsWanted(2); ++kill) {
        install();
        QProcess &app = start({});
        test::spinUntil([this] { return openVersion() == u"0.1.0"; });
        QProcess &update = start({QStringLiteral("mise-a-jour"), QStringLiteral("--installer")});
        const auto moment = static_cast<std::size_t>(kill + 1) % moments.size();
        test::spinUntil(moments.at(moment));
        const int wait = QRandomGenerator::global()->bounded(longest);
        SCOPED_TRACE("moment " + std::to_string(moment) + " and " + std::to_string(wait) + " ms");
        test::waitFor(sleepFor(std::chrono::milliseconds(wait)));
        cutPower();
        waitForEnd(app);
        waitForEnd(update);
        EXPECT_THAT(run({QStringLiteral("--version")}).out,
                    testing::AnyOf("vorle 0.1.0\n", "vorle 0.2.0\n"));

        QProcess &again = start({});
        QString opened;
        test::spinUntil([&] { return !(opened = openVersion()).isEmpty(); });
        old += opened == u"0.1.0" ? 1 : 0;
        EXPECT_EQ(test::readFile(program.topicsFile()), topics);
        ::kill(static_cast<pid_t>(again.processId()), SIGTERM);
        waitForEnd(again);
        EXPECT_EQ(again.exitCode(), 0);
        EXPECT_EQ(run({QStringLiteral("--version")}).out, "vorle 0.2.0\n")
            << "what was ready takes its place at the next end";
    }
    RecordProperty("old", old);
}

TEST_F(UpdateFlowTest, killed_while_it_goes_back_the_version_before_starts) {
    install();
    const QString bad = folder() + QStringLiteral("/versions/0.2.0/bin/vorle");
    for (int kill = 0; kill < killsWanted(8); ++kill) {
        test::writeProgram(bad, "sleep 0.01; exit 127"); // a library is missing, say
        for (const auto &[link, version] :
             {std::pair("previous", "0.1.0"), std::pair("current", "0.2.0")}) {
            const QString path = folder() + u'/' + QString::fromUtf8(link);
            QFile::remove(path);
            ASSERT_TRUE(
                QFile::link(QStringLiteral("versions/") + QString::fromUtf8(version), path));
        }
        QProcess &first = start({QStringLiteral("--version")});
        const int moment = QRandomGenerator::global()->bounded(60);
        SCOPED_TRACE("killed after " + std::to_string(moment));
        test::waitFor(sleepFor(std::chrono::milliseconds(moment)));
        cutPower();
        waitForEnd(first);
        EXPECT_EQ(run({QStringLiteral("--version")}).out, "vorle 0.1.0\n");
        EXPECT_EQ(linked("current"), QStringLiteral("0.1.0"));
        EXPECT_EQ(test::readFile(folder() + QStringLiteral("/refused")), "0.2.0");
    }
    QProcess &app = start({});
    test::spinUntil([this] { return openVersion() == u"0.1.0"; });
    ::kill(static_cast<pid_t>(app.processId()), SIGTERM);
    waitForEnd(app);
    EXPECT_EQ(app.exitCode(), 0);
}

} // namespace
} // namespace vorle
