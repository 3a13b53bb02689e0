// The folder of a program that updates itself, and the launcher that starts what is in it.

#include "update/Installation.h"

#include "tests/support/Files.h"
#include "tests/support/Wait.h"
#include "tests/update/ReleaseMaker.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <list>
#include <system_error>

#include <unistd.h>

namespace vorle {
namespace {

using test::layInstallation;

class InstallationTest : public testing::Test {
protected:
    static constexpr const char *says = "echo $VERSION \"$@\"";

    QString path(const char *name) const { return root.filePath(QString::fromUtf8(name)); }
    QString programOf(const char *version) const {
        return path("app/versions/") + QString::fromUtf8(version) + QStringLiteral("/bin/vorle");
    }
    Installation installation(const char *version = "1.4.0") const {
        return *Installation::of(programOf(version));
    }
    void lay(const char *shell = says) { layInstallation(path("app"), "1.4.0", shell); }
    /// Makes that version ready, as an update leaves it.
    void makeReady(const char *version, const char *shell, const char *inUse = "1.4.0") {
        test::writeProgram(path("tree/bin/vorle"), QByteArray("VERSION=") + version + '\n' + shell);
        installation(inUse).makeReady(path("tree"), QString::fromUtf8(version));
    }
    struct Ran {
        QByteArray out;
        int status;
    };
    enum class Screen { There, None };
    /// What the launcher runs.
    Ran start(const QStringList &words = {}, Screen screen = Screen::There) const {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
            environment.remove(QString::fromUtf8(name));
        }
        if (screen == Screen::There) {
            environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":none"));
        }
        process.setProcessEnvironment(environment);
        process.start(path("app/vorle"), words);
        process.waitForFinished();
        return {process.readAllStandardOutput().trimmed(),
                process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1};
    }
    QString current() const { return QFileInfo(path("app/current")).symLinkTarget(); }

    QTemporaryDir root;
};

TEST_F(InstallationTest, is_found_where_it_lies_and_left_alone_elsewhere) {
    lay();
    EXPECT_EQ(installation().version(), QStringLiteral("1.4.0"));
    EXPECT_EQ(installation().folder(), QFileInfo(path("app")).canonicalFilePath());
    // By the links that people and desktops start it by.
    ASSERT_TRUE(QFile::link(path("app"), path("link")));
    EXPECT_EQ(Installation::keeperOf(path("link/current/bin/vorle")), UpdateKeeper::Itself);

    test::writeProgram(path("build/bin/vorle"), says);
    EXPECT_EQ(Installation::keeperOf(path("build/bin/vorle")), UpdateKeeper::Nobody);
    EXPECT_EQ(Installation::keeperOf(QStringLiteral("/usr/bin/env")), UpdateKeeper::Packages);
    constexpr uid_t another = 4711;
    const QByteArray versions = QFile::encodeName(path("app/versions"));
    if (::chown(versions.constData(), another, gid_t(-1)) == 0) { // as root alone may do
        EXPECT_EQ(Installation::keeperOf(path("app/current/bin/vorle")), UpdateKeeper::Another)
            << "it would leave files there that their owner may not touch";
        ASSERT_EQ(::chown(versions.constData(), ::geteuid(), gid_t(-1)), 0);
    }
    EXPECT_EQ(Installation::keeperOf(QString()), UpdateKeeper::Nobody);
    QFile::remove(path("app/current"));
    EXPECT_FALSE(Installation::of(programOf("1.4.0"))) << "a copy of the folder's inside";
}

TEST_F(InstallationTest, a_version_is_ready_then_on_trial_then_alone) {
    lay();
    EXPECT_EQ(start({QStringLiteral("mot"), QStringLiteral("deux mots")}).out,
              "1.4.0 mot deux mots");
    EXPECT_FALSE(installation().activate()) << "nothing is ready";
    makeReady("1.5.0", says);
    EXPECT_EQ(installation().ready(), QStringLiteral("1.5.0"));
    EXPECT_EQ(start().out, "1.4.0") << "until the program ends";
    EXPECT_TRUE(installation().activate());
    EXPECT_EQ(start().out, "1.5.0");
    installation().confirm(); // of the old one, which still runs
    EXPECT_TRUE(QFileInfo(path("app/previous")).isSymLink());
    installation("1.5.0").confirm();
    EXPECT_FALSE(QFileInfo(path("app/previous")).isSymLink());
    EXPECT_FALSE(QFileInfo::exists(path("app/starts")));
    EXPECT_EQ(start().out, "1.5.0");

    test::writeFile(path("app/.staging/archive"), "left over");
    test::writeFile(path("mine/file"), "mine");
    ASSERT_TRUE(QFile::link(path("mine"), path("app/versions/1.2.0")));
    installation("1.5.0").sweep();
    EXPECT_FALSE(QFileInfo::exists(path("app/.staging")));
    EXPECT_TRUE(QFileInfo::exists(path("mine/file"))) << "what a link leads to";
    EXPECT_EQ(QDir(path("app/versions")).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("1.5.0")});
}

TEST_F(InstallationTest, never_goes_to_an_older_or_to_the_same_version) {
    lay();
    makeReady("1.3.9", says);
    EXPECT_FALSE(installation().ready());
    EXPECT_FALSE(installation().activate());
    EXPECT_EQ(start().out, "1.4.0");
    EXPECT_ANY_THROW(makeReady("1.4.0", "echo other"));
    EXPECT_EQ(start().out, "1.4.0");
    // A link that leads elsewhere is none.
    QFile::remove(path("app/next"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/bin"), path("app/next")));
    EXPECT_FALSE(installation().activate());
}

TEST_F(InstallationTest, what_a_process_leaves_that_dies_between_two_steps_starts_and_goes_on) {
    for (const char *left : {"next.new", "previous.new", "previous"}) {
        SCOPED_TRACE(left);
        QDir(path("app")).removeRecursively();
        lay();
        makeReady("1.5.0", says);
        test::writeFile(path("app/starts"), "xxx"); // of an update long ago
        ASSERT_TRUE(
            QFile::link(QStringLiteral("versions/1.4.0"), path("app/") + QString::fromUtf8(left)));
        EXPECT_EQ(start().out, "1.4.0");
        installation().confirm(); // which it does when it has opened
        EXPECT_EQ(start().out, "1.4.0");
        EXPECT_EQ(installation().ready(), QStringLiteral("1.5.0"));
        EXPECT_TRUE(installation().activate());
        EXPECT_EQ(start().out, "1.5.0");
    }
    // A version that was put in its place and never made ready.
    test::writeFile(path("app/versions/1.6.0/bin/vorle"), "half");
    makeReady("1.6.0", says, "1.5.0");
    EXPECT_TRUE(installation("1.5.0").activate());
    EXPECT_EQ(start().out, "1.6.0");
}

TEST_F(InstallationTest, a_version_that_does_not_start_gives_way_to_the_one_before) {
    struct Case {
        const char *shell;
        int tries; ///< before the one that goes back: a crash may have another reason
    };
    for (const auto &[shell, tries] :
         {Case{"exit 127", 0}, Case{"kill -SEGV $$", 2}, Case{"kill -ABRT $$", 2}}) {
        SCOPED_TRACE(shell);
        QDir(path("app")).removeRecursively();
        lay();
        makeReady("1.5.0", shell);
        ASSERT_TRUE(installation().activate());
        for (int each = 0; each < tries; ++each) {
            EXPECT_EQ(
                start(each == 0 ? QStringList() : QStringList(QStringLiteral("sujets"))).status,
                -1);
            EXPECT_FALSE(installation().refused());
        }
        EXPECT_EQ(start({QStringLiteral("sujets")}).out, "1.4.0 sujets") << "by the same words";
        EXPECT_EQ(current(), path("app/versions/1.4.0"));
        EXPECT_EQ(installation().refused(), QStringLiteral("1.5.0"));
        EXPECT_EQ(start().out, "1.4.0");
        // Mended, it may come again.
        makeReady("1.5.0", says);
        ASSERT_TRUE(installation().activate());
        EXPECT_EQ(start().out, "1.5.0");
        installation("1.5.0").confirm();
        EXPECT_FALSE(installation("1.5.0").refused());
    }
    // A file that cannot be run at all.
    makeReady("1.6.0", says, "1.5.0");
    ASSERT_TRUE(installation("1.5.0").activate());
    test::writeFile(programOf("1.6.0"), "#!/nowhere/sh\n");
    EXPECT_EQ(start().out, "1.5.0");
}

TEST_F(InstallationTest, goes_back_to_what_worked_and_from_what_was_tried_alone) {
    for (const bool isInPlace : {false, true}) {
        QDir(path("app")).removeRecursively();
        lay();
        makeReady("1.5.0", "exit 127"); // never said that it works
        ASSERT_TRUE(installation().activate());
        makeReady("1.6.0", "exit 127", "1.5.0");
        if (isInPlace) {
            ASSERT_TRUE(installation("1.5.0").activate());
        }
        EXPECT_EQ(start().out, "1.4.0");
        EXPECT_EQ(installation().refused(),
                  isInPlace ? QStringLiteral("1.6.0") : QStringLiteral("1.5.0"));
    }
    QDir(path("app")).removeRecursively();
    lay();
    makeReady("1.5.0", "ln -sfn versions/1.6.0 \"$(dirname \"$0\")/../../../current\"; exit 127");
    test::writeProgram(path("app/versions/1.6.0/bin/vorle"), says);
    ASSERT_TRUE(installation().activate());
    EXPECT_EQ(start().status, 127);
    EXPECT_EQ(current(), path("app/versions/1.6.0")) << "it came meanwhile, and was not tried";
}

TEST_F(InstallationTest, starts_that_never_say_that_they_work_are_counted) {
    lay();
    // It hangs, and whoever waits for it has it killed.
    makeReady("1.5.0", "[ $# -gt 0 ] || kill -KILL $$; echo $VERSION");
    ASSERT_TRUE(installation().activate());
    for (int tries = 0; tries < 3; ++tries) {
        EXPECT_EQ(start().status, -1);
        EXPECT_EQ(start({QStringLiteral("--version")}).out, "1.5.0") << "a command tells nothing";
    }
    EXPECT_EQ(start().out, "1.4.0");

    // Without a screen none opens.
    makeReady("1.5.1", "echo $VERSION; exit 1");
    ASSERT_TRUE(installation().activate());
    for (int tries = 0; tries < 6; ++tries) {
        EXPECT_EQ(start({}, Screen::None).out, "1.5.1");
    }

    // One that ends in good order was not stuck, whatever it did: it opened another's window.
    makeReady("1.6.0", says, "1.5.1");
    ASSERT_TRUE(installation("1.5.1").activate());
    for (int tries = 0; tries < 6; ++tries) {
        EXPECT_EQ(start().out, "1.6.0");
    }
}

TEST_F(InstallationTest, a_version_that_neither_opens_nor_ends_gives_way_once_it_had_its_time) {
    struct Case {
        const char *name;
        const char *shell;
        const char *stays; ///< which version is in use then, and says so
    };
    const std::array cases{
        Case{"hangs", "exec sleep 600", "1.4.0"},
        Case{"hears nothing", "trap '' TERM; while :; do sleep 0.1; done", "1.4.0"},
        Case{"says that it waits", "touch \"$app/answers\"; sleep 5; echo 1.5.0", "1.5.0"},
        Case{"is slow", "sleep 1; rm \"$app/previous\"; sleep 4; echo 1.5.0", "1.5.0"}};
    std::list<QProcess> clicks;
    const auto start = [&](const QString &folder) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":none"));
        clicks.emplace_back().setProcessEnvironment(environment);
        clicks.back().start(folder + QStringLiteral("/vorle"), QStringList());
        ASSERT_TRUE(clicks.back().waitForStarted());
    };
    for (const Case &each : cases) {
        const QString folder = path(each.name);
        layInstallation(folder, "1.4.0", says);
        QFile::remove(folder + QStringLiteral("/vorle"));
        ASSERT_TRUE(QFile::copy(QStringLiteral(VORLE_BINARIES "/vorle-launcher-hasty"),
                                folder + QStringLiteral("/vorle")));
        test::writeProgram(folder + QStringLiteral("/versions/1.5.0/bin/vorle"),
                           "app='" + folder.toUtf8() + "'\n" + each.shell);
        test::writeFile(folder + QStringLiteral("/answers"), {}); // of an earlier one
        QFile::remove(folder + QStringLiteral("/current"));
        for (const auto &[link, version] :
             {std::pair("previous", "1.4.0"), std::pair("current", "1.5.0")}) {
            ASSERT_TRUE(QFile::link(QStringLiteral("versions/") + QString::fromUtf8(version),
                                    folder + u'/' + QString::fromUtf8(link)));
        }
        start(folder);
        test::waitFor(sleepFor(std::chrono::milliseconds(50)));
        start(folder); // another click: what the first comes to, it comes to as well
    }
    for (auto click = clicks.begin(); const Case &each : cases) {
        SCOPED_TRACE(each.name);
        for (int twice = 0; twice < 2; ++twice, ++click) {
            ASSERT_TRUE(click->state() == QProcess::NotRunning || click->waitForFinished());
            EXPECT_EQ(click->readAllStandardOutput().trimmed(), each.stays);
            EXPECT_EQ(click->exitCode(), 0);
        }
        const QString folder = path(each.name);
        EXPECT_TRUE(QFileInfo(folder + QStringLiteral("/current"))
                        .symLinkTarget()
                        .endsWith(QString::fromUtf8(each.stays)));
        EXPECT_EQ(test::readFile(folder + QStringLiteral("/refused")),
                  qstrcmp(each.stays, "1.4.0") == 0 ? "1.5.0" : "");
    }
}

TEST_F(InstallationTest, starts_beside_one_that_is_tried_say_nothing_of_it) {
    lay();
    // Slow to open its window.
    makeReady("1.5.0", "case $# in 0) echo $VERSION; read line;; *) exit 127;; esac");
    ASSERT_TRUE(installation().activate());
    std::list<QProcess> clicks(5);
    for (QProcess &click : clicks) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":none"));
        click.setProcessEnvironment(environment);
        click.start(path("app/vorle"), QStringList());
        ASSERT_TRUE(click.waitForReadyRead());
        EXPECT_EQ(click.readAllStandardOutput(), "1.5.0\n");
    }
    EXPECT_EQ(start({QStringLiteral("sujets")}).status, 127);
    EXPECT_FALSE(installation().refused());
    EXPECT_TRUE(installation("1.5.0").isInDoubt());
    for (QProcess &click : clicks) {
        click.write("\n");
        EXPECT_TRUE(click.waitForFinished());
    }
    EXPECT_FALSE(installation("1.5.0").isInDoubt());
    EXPECT_EQ(current(), path("app/versions/1.5.0"));
}

TEST_F(InstallationTest, a_version_that_a_process_runs_from_stays) {
    lay();
    for (const char *version : {"1.2.0", "1.3.0"}) {
        test::writeProgram(programOf(version), says);
        test::writeFile(path("app/versions/") + QString::fromUtf8(version) +
                            QStringLiteral("/version"),
                        version);
    }
    {
        const Descriptor first = Installation::hold(programOf("1.3.0"));
        const Descriptor second = Installation::hold(programOf("1.3.0"));
        ASSERT_TRUE(first.isOpen() && second.isOpen());
        installation().sweep();
        EXPECT_TRUE(QFileInfo::exists(programOf("1.3.0")));
        EXPECT_FALSE(QFileInfo::exists(programOf("1.2.0")));
        EXPECT_THROW(makeReady("1.3.0", says), std::system_error) << "it would go on in its place";
    }
    EXPECT_FALSE(Installation::hold(QStringLiteral("/usr/bin/env")).isOpen());
    installation().sweep();
    EXPECT_FALSE(QFileInfo::exists(programOf("1.3.0")));
}

TEST_F(InstallationTest, the_launcher_hands_on_signals_and_ends_as_the_program_does) {
    lay();
    makeReady("1.5.0", "case $1 in code) exit 3;; *) echo up; read line;; esac");
    ASSERT_TRUE(installation().activate());
    EXPECT_EQ(start({QStringLiteral("code")}).status, 3);
    QProcess process;
    process.start(path("app/vorle"), {QStringLiteral("attends")});
    ASSERT_TRUE(process.waitForReadyRead());
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(process.exitCode(), SIGTERM);
    EXPECT_EQ(current(), path("app/versions/1.5.0")) << "who is told to end has not failed";
}

} // namespace
} // namespace vorle
