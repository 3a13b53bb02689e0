// Several processes at one installation, and what the disk has to say meanwhile.

#include "storage/FileLock.h"
#include "tests/support/HeldPool.h"
#include "tests/update/AppcastEngineFixture.h"

namespace vorle {
namespace {

using SharedInstallationTest = test::AppcastEngineTest;

TEST_F(SharedInstallationTest, nothing_is_said_to_work_while_another_moves_the_links) {
    const QString previous = folder() + QStringLiteral("/previous");
    ASSERT_TRUE(QFile::link(QStringLiteral("versions/1.3.0"), previous));
    FileLock other(installation().lockFile());
    ASSERT_TRUE(other.tryLock());
    const auto isOnTrial = [&] { return QFileInfo(previous).isSymLink(); };
    engine->confirmStart();
    EXPECT_EQ(finished(), std::nullopt); // which waits for it
    EXPECT_TRUE(isOnTrial());
    other.release();
    lookUntil([&] { return !isOnTrial(); });
    EXPECT_EQ(finished(), std::nullopt);

    // A disk that refuses for a moment.
    const QString lock = folder() + QStringLiteral("/update.lock");
    ASSERT_TRUE(QFile::remove(lock) && QFile::link(QStringLiteral("/nowhere/lock"), lock));
    ASSERT_TRUE(QFile::link(QStringLiteral("versions/1.3.0"), previous));
    engine->confirmStart();
    EXPECT_EQ(finished(), std::nullopt);
    EXPECT_TRUE(isOnTrial());
    ASSERT_TRUE(QFile::remove(lock));
    lookUntil([&] { return !isOnTrial(); });
    EXPECT_EQ(finished(), std::nullopt);

    // The thread of the window is not the one that asks the disk.
    ASSERT_TRUE(QFile::link(QStringLiteral("versions/1.3.0"), previous));
    {
        const test::HeldPool held;
        engine->confirmStart();
        QCoreApplication::processEvents();
        EXPECT_TRUE(isOnTrial());
    }
    test::spinUntil([&] { return !isOnTrial(); });
}

TEST_F(SharedInstallationTest, of_two_processes_that_install_the_second_says_so) {
    publish("1.5.0", archive("1.5.0"));
    FileLock other(installation().lockFile());
    ASSERT_TRUE(other.tryLock());
    updater->setWatched(true);
    checkAndInstall();
    waitFor(Stage::InstallFailed);
    EXPECT_EQ(updater->title(), QStringLiteral("Une mise à jour est en cours"));
    EXPECT_EQ(updater->text(),
              QStringLiteral("Une autre vorle s’en occupe déjà\u00A0: laisse-la finir."));
    EXPECT_EQ(told, 0);
    updater->setWatched(false);
    updater->acknowledge();
    preferences.change(&Settings::updateInstalls, true);
    clock.moment = clock.moment.addDays(1);
    lookUntil([this] { return server.requestCount("/appcast.xml") == 2; });
    waitFor(Stage::Downloading);
    waitFor(Stage::Idle); // nobody asked this one
    EXPECT_EQ(told, 0);
    other.release();
    test::spinUntil([this] {
        updater->check(); // once the engine has ended, too
        return updater->stage() == Stage::Found;
    });
    updater->install();
    test::spinUntil([this] { return quits == 1; });
}

TEST_F(SharedInstallationTest,
       what_another_process_put_in_place_meanwhile_is_ready_and_not_fetched) {
    publish("1.5.0", archive("1.5.0"));
    updater->check();
    waitFor(Stage::Found);
    const auto putInPlace = [this](const char *version) {
        test::writeProgram(folder() + QStringLiteral("/versions/") + QString::fromUtf8(version) +
                               QStringLiteral("/bin/vorle"),
                           QByteArray("echo vorle ") + version);
        QFile::remove(folder() + QStringLiteral("/current"));
        ASSERT_TRUE(QFile::link(QStringLiteral("versions/") + QString::fromUtf8(version),
                                folder() + QStringLiteral("/current")));
    };
    putInPlace("1.5.0");
    updater->install();
    test::spinUntil([this] { return quits == 1; });
    EXPECT_EQ(server.requestCount("/a.tar.gz"), 0);
    EXPECT_EQ(finished(), folder() + QStringLiteral("/vorle"));
    EXPECT_EQ(started(), "vorle 1.5.0");

    // It is told to who asks, and once by itself; the feed is not asked.
    beginAgain();
    EXPECT_EQ(updater->stage(), Stage::Ready);
    const int before = told;
    putInPlace("1.6.0");
    clock.moment = clock.moment.addDays(2);
    engine->lookAtClock();
    engine->lookAtClock();
    EXPECT_EQ(told, before + 1);
    updater->relaunch();
    EXPECT_EQ(quits, 2);
    EXPECT_EQ(server.requestCount("/appcast.xml"), 1);
    // What is ready, but older than that, is nothing.
    test::writeProgram(folder() + QStringLiteral("/versions/1.5.5/bin/vorle"), "exit 0");
    ASSERT_TRUE(QFile::link(QStringLiteral("versions/1.5.5"), folder() + QStringLiteral("/next")));
    EXPECT_EQ(installation().coming(), QStringLiteral("1.6.0"));
    finished();
    EXPECT_EQ(started(), "vorle 1.6.0");
}

} // namespace
} // namespace vorle
