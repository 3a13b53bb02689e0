// The whole way of an update with an engine of our own: feed and archive from a server on this
// machine, a program that is a shell text, and all that can go wrong between them.

#include "tests/update/AppcastEngineFixture.h"

#include "tests/support/Text.h"
#include "tests/support/Variables.h"

#include <unistd.h>

namespace vorle {
namespace {

using test::AppcastEngineTest;
using test::ReleaseMaker;
using test::TestReply;

TEST_F(AppcastEngineTest, finds_fetches_checks_and_takes_the_place_at_the_end) {
    publish("1.5.0", archive("1.5.0"));
    checkAndInstall();
    test::spinUntil([this] { return quits == 1; });
    EXPECT_EQ(updater->stage(), Stage::Installing);
    EXPECT_EQ(started(), "vorle 1.4.0") << "until the program has ended";
    EXPECT_EQ(finished(), folder() + QStringLiteral("/vorle"));
    EXPECT_EQ(started(), "vorle 1.5.0");
    EXPECT_FALSE(QFileInfo::exists(folder() + QStringLiteral("/.staging")));
}

TEST_F(AppcastEngineTest,
       put_off_it_is_installed_when_the_program_ends_or_offered_at_the_next_start) {
    publish("1.5.0", archive("1.5.0"));
    preferences.change(&Settings::updateInstalls, true);
    engine->lookAtClock();
    waitFor(Stage::Ready);
    EXPECT_EQ(quits, 0);
    EXPECT_EQ(told, 1);
    test::spinUntil([this] { return !QFileInfo::exists(folder() + QStringLiteral("/.staging")); });
    clock.moment = clock.moment.addDays(2);
    engine->lookAtClock();
    EXPECT_EQ(told, 1) << "it is not told at every look";
    test::writeFile(folder() + QStringLiteral("/.staging/archive"), "of another download");
    beginAgain(); // it was killed
    EXPECT_EQ(updater->stage(), Stage::Ready);
    test::spinUntil([this] { return !QFileInfo::exists(folder() + QStringLiteral("/.staging")); });
    EXPECT_EQ(finished(), std::nullopt) << "nobody asked for a relaunch";
    EXPECT_EQ(started(), "vorle 1.5.0");
}

TEST_F(AppcastEngineTest, what_goes_wrong_with_the_check_changes_nothing) {
    const QByteArray good =
        ReleaseMaker::feed(ReleaseMaker::item("1.5.0", "a.tar.gz", 10, QByteArray(64, 's')));
    TestReply missing;
    missing.status = 404;
    TestReply broken = TestReply::page(good);
    broken.status = 500;
    for (const TestReply &reply :
         {missing, broken, TestReply::page("<html/>"), TestReply::page(good.chopped(30)),
          TestReply::shaped(TestReply::Shape::Endless, good),
          TestReply::shaped(TestReply::Shape::Raw,
                            "HTTP/1.1 200 OK\r\nContent-Length: 900\r\n\r\n<"),
          TestReply::redirect("http://192.0.2.1/appcast.xml"),
          TestReply::redirect("file:///etc/passwd")}) {
        server.serve("/appcast.xml", reply);
        updater->check();
        waitFor(Stage::CheckFailed);
        updater->acknowledge();
    }
    // Nobody answers at all.
    config.feed.setPort(1);
    beginAgain();
    updater->check();
    waitFor(Stage::CheckFailed);
    expectUntouched();
}

TEST_F(AppcastEngineTest, a_check_by_itself_that_got_no_answer_is_made_up_for_and_can_be_joined) {
    TestReply missing;
    missing.status = 404;
    server.serve("/appcast.xml", missing);
    lookUntil([this] { return server.requestCount("/appcast.xml") == 1; });
    publish("1.5.0", archive("1.5.0"));
    preferences.change(&Settings::skippedUpdate, QStringLiteral("1.5.0"));
    clock.moment = clock.moment.addSecs(3600);
    lookUntil([this] { return server.requestCount("/appcast.xml") == 2; });
    beginAgain();
    clock.moment = clock.moment.addDays(1);
    engine->lookAtClock();
    updater->setWatched(true);
    updater->check(); // while that is under way
    EXPECT_EQ(updater->stage(), Stage::Checking);
    waitFor(Stage::Found);
    EXPECT_EQ(told, 0) << "it was asked for";
    EXPECT_EQ(server.requestCount("/appcast.xml"), 3);
}

TEST_F(AppcastEngineTest, what_goes_wrong_with_the_archive_changes_nothing) {
    const QByteArray good = archive("1.5.0");
    QByteArray turned = good;
    turned[turned.size() / 2] = char(turned[turned.size() / 2] ^ 1);
    const QString mark = root.filePath(QStringLiteral("ran"));
    const QByteArray runs = "touch " + mark.toUtf8() + "; echo vorle $VERSION";
    struct Case {
        const char *what;
        QByteArray sent;
        QByteArray announced; ///< what was signed, and whose length is told
    };
    for (const Case &each : {
             Case{"cut short", good.chopped(10), good},
             Case{"longer than announced", good + "more", good},
             Case{"another byte", turned, good},
             Case{"another archive of that length", archive("1.5.0", runs).leftJustified(2000, 'x'),
                  archive("1.5.0").leftJustified(2000, 'x')},
             Case{"an older version, signed", archive("1.3.0", runs), {}},
             Case{"the same version, signed", archive("1.4.0", runs), {}},
             Case{"a newer one than it is called", archive("1.6.0", runs), {}},
             Case{"a link",
                  ReleaseMaker::packed(ReleaseMaker::entries("1.5.0") +
                                       QList<test::ArchiveEntry>{{"a", {}, false, '2', "/etc"}}),
                  {}},
             Case{"out of its folder", ReleaseMaker::packed({{"../../../escaped", "x"}}), {}},
             Case{"no program", ReleaseMaker::packed({{"version", "1.5.0\n"}}), {}},
             Case{"a program that does not start", archive("1.5.0", "exit 1"), {}},
             Case{"a program that is another", archive("1.5.0", "echo vorle 1.4.9"), {}},
             Case{"no archive", "text", {}},
         }) {
        SCOPED_TRACE(each.what);
        publish("1.5.0", each.sent, each.announced);
        checkAndInstall();
        waitFor(Stage::InstallFailed);
        EXPECT_EQ(updater->title(), QStringLiteral("La mise à jour n’a pas pu s’installer"));
        EXPECT_FALSE(QFileInfo::exists(mark)) << "something ran that was not what it had to be";
        updater->acknowledge();
    }
    EXPECT_FALSE(QFileInfo::exists(root.filePath(QStringLiteral("escaped"))));
    // Signed by somebody else.
    const ReleaseMaker other;
    server.serve("/appcast.xml", TestReply::page(ReleaseMaker::feed(ReleaseMaker::item(
                                     "1.5.0", "a.tar.gz", good.size(), other.sign(good)))));
    server.serve("/a.tar.gz", TestReply::page(good));
    checkAndInstall();
    waitFor(Stage::InstallFailed);
    // From somewhere that is not safe.
    server.serve("/appcast.xml",
                 TestReply::page(ReleaseMaker::feed(ReleaseMaker::item(
                     "1.5.0", "http://192.0.2.1/a.tar.gz", good.size(), maker.sign(good)))));
    checkAndInstall();
    waitFor(Stage::InstallFailed);
    expectUntouched();
}

TEST_F(AppcastEngineTest, a_full_disk_leaves_the_version_in_use_and_another_try_works) {
    const QByteArray large =
        ReleaseMaker::packed(ReleaseMaker::entries("1.5.0") +
                             QList<test::ArchiveEntry>{{"big", QByteArray(900'000, 'x')}});
    publish("1.5.0", large);
    test::withFileSizeLimit(300'000, [this] {
        checkAndInstall();
        waitFor(Stage::InstallFailed);
    });
    expectUntouched();
    checkAndInstall();
    waitFor(Stage::Ready);
}

TEST_F(AppcastEngineTest, nothing_is_asked_of_the_network_before_it_is_allowed) {
    publish("1.5.0", archive("1.5.0"));
    preferences.change(&Settings::updateChecks, std::nullopt);
    engine->lookAtClock();
    EXPECT_FALSE(updater->isPermissionWanted()) << "it is asked for in context";
    updater->check(); // allowed by being asked for
    waitFor(Stage::Found);
    EXPECT_TRUE(updater->isPermissionWanted());
    updater->skip();
    updater->allow(false);
    const auto asked = server.requestCount("/appcast.xml");
    EXPECT_EQ(asked, 1);
    clock.moment = clock.moment.addDays(30);
    engine->lookAtClock();
    EXPECT_EQ(server.requestCount("/appcast.xml"), asked);
    updater->setChecksByItself(true);
    lookUntil([&] { return server.requestCount("/appcast.xml") == asked + 1; });
    EXPECT_FALSE(updater->isPermissionWanted()) << "asked once";

    // What is to be installed as it comes is looked for, for as long as that holds.
    preferences.change(&Settings::updateChecks, std::nullopt);
    preferences.change(&Settings::updateInstalls, true);
    beginAgain();
    EXPECT_TRUE(updater->checksByItself());
    updater->setInstallsByItself(false);
    EXPECT_FALSE(updater->checksByItself());
    EXPECT_EQ(preferences.settings().updateChecks, std::nullopt) << "nobody answered that yet";
    preferences.change(&Settings::updateChecks, std::optional(false));
    updater->setInstallsByItself(true);
    EXPECT_TRUE(updater->checksByItself()) << "nothing would come otherwise";
    beginAgain(); // who turned it on is forgotten
    updater->setInstallsByItself(false);
    EXPECT_FALSE(updater->checksByItself());
    EXPECT_EQ(preferences.settings().updateChecks, std::optional(false)) << "as it was answered";
}

TEST_F(AppcastEngineTest, looks_once_a_day_and_passes_over_what_was_skipped) {
    publish("1.5.0", archive("1.5.0"));
    engine->lookAtClock();
    waitFor(Stage::Found);
    updater->skip();
    waitFor(Stage::Idle);
    clock.moment = clock.moment.addSecs(23 * 3600);
    engine->lookAtClock();
    EXPECT_EQ(server.requestCount("/appcast.xml"), 1);
    clock.moment = clock.moment.addSecs(3600);
    lookUntil([this] { return server.requestCount("/appcast.xml") == 2; });
    beginAgain(); // ends what is under way
    EXPECT_EQ(updater->stage(), Stage::Idle);
    updater->check(); // who asks is told of it all the same
    waitFor(Stage::Found);
    updater->skip();
    waitFor(Stage::Idle);
    publish("1.6.0", archive("1.6.0"));
    clock.moment = clock.moment.addDays(-9); // a clock that was wrong
    lookUntil([this] { return updater->stage() == Stage::Found; });
    EXPECT_EQ(updater->found().version, QStringLiteral("1.6.0"));
}

TEST_F(AppcastEngineTest, a_download_can_be_stopped_and_a_second_process_does_not_join_in) {
    const QByteArray bytes = archive("1.5.0");
    publish("1.5.0", bytes);
    server.serve("/a.tar.gz", TestReply::shaped(TestReply::Shape::Dripping, bytes));
    checkAndInstall();
    test::spinUntil([this] { return updater->receivedBytes() > 0; });
    EXPECT_EQ(updater->expectedBytes(), bytes.size());
    EXPECT_THROW(test::waitFor(fetchRelease(*std::make_unique<HttpClient>(true), config,
                                            installation(), {}, {}, {})),
                 std::runtime_error)
        << "another holds the folder";
    updater->cancel();
    EXPECT_EQ(updater->stage(), Stage::Idle);
    const auto asked = server.requestCount("/appcast.xml");
    updater->check(); // while that one is still ending
    waitFor(Stage::Found);
    EXPECT_EQ(server.requestCount("/appcast.xml"), asked + 1);
    updater->skip();
    test::spinUntil([this] { return !QFileInfo::exists(folder() + QStringLiteral("/.staging")); });
    expectUntouched();
    // One that another process made ready meanwhile is not fetched again.
    const auto fetched = server.requestCount("/a.tar.gz");
    test::writeProgram(folder() + QStringLiteral("/versions/1.5.0/bin/vorle"), "exit 0");
    ASSERT_TRUE(QFile::link(QStringLiteral("versions/1.5.0"), folder() + QStringLiteral("/next")));
    Release release;
    release.version = QStringLiteral("1.5.0");
    test::waitFor(
        fetchRelease(*std::make_unique<HttpClient>(true), config, installation(), release, {}, {}));
    EXPECT_EQ(server.requestCount("/a.tar.gz"), fetched);
}

TEST_F(AppcastEngineTest, says_why_it_cannot_update) {
    const UpdateConfig whole = config;
    EXPECT_EQ(updateObstacle(whole, program()), std::nullopt);
    UpdateConfig keyless = whole;
    keyless.publicKey.clear();
    EXPECT_TRUE(updateObstacle(keyless, program())->contains(QStringLiteral("clé")));
    EXPECT_TRUE(updateObstacle({}, program())->contains(QStringLiteral("chercher")));
    EXPECT_TRUE(
        updateObstacle(whole, QStringLiteral("/usr/bin/env"))->contains(QStringLiteral("système")));
    constexpr uid_t another = 4711;
    if (::chown(QFile::encodeName(folder()).constData(), another, gid_t(-1)) == 0) { // as root
        EXPECT_TRUE(updateObstacle(whole, program())->contains(QStringLiteral("pas le droit")));
        ASSERT_EQ(::chown(QFile::encodeName(folder()).constData(), ::geteuid(), gid_t(-1)), 0);
    }
    config = keyless;
    publish("1.5.0", archive("1.5.0"));
    beginAgain();
    updater->check();
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_TRUE(server.requests().isEmpty());

    config = whole;
    packaged = [](QString, CancelToken) -> Task<bool> { co_return true; };
    beginAgain();
    updater->check();
    test::spinUntil([this] { return updater->stage() == Stage::Idle; });
    EXPECT_TRUE(updater->obstacle().contains(QStringLiteral("système")));
    EXPECT_TRUE(server.requests().isEmpty());
}

TEST_F(AppcastEngineTest, a_version_that_was_taken_back_is_told_and_not_offered_unasked) {
    publish("1.5.0", archive("1.5.0"));
    test::writeFile(folder() + QStringLiteral("/refused"), "1.5.0");
    beginAgain();
    EXPECT_EQ(updater->stage(), Stage::InstallFailed);
    updater->acknowledge();
    engine->lookAtClock();
    test::spinUntil([this] { return server.requestCount("/appcast.xml") == 1; });
    beginAgain();
    EXPECT_EQ(updater->stage(), Stage::Idle) << "told once";
    updater->check();
    waitFor(Stage::Found);

    for (const char *runs : {"1.4.0", "1.3.9"}) {
        test::writeFile(folder() + QStringLiteral("/refused"), runs);
        beginAgain();
        EXPECT_EQ(updater->stage(), Stage::Idle) << "it runs, or a later one does";
    }
    const QString refused = folder() + QStringLiteral("/refused");
    test::spinUntil([&] { return !QFileInfo::exists(refused); }); // which takes its time
    ASSERT_TRUE(QDir().mkpath(refused));
    EXPECT_NO_THROW(beginAgain()) << "a mark that cannot be removed";
}

TEST_F(AppcastEngineTest, a_version_that_cannot_be_put_in_its_place_is_told_and_comes_later) {
    publish("1.5.0", archive("1.5.0"));
    checkAndInstall();
    test::spinUntil([this] { return quits == 1; });
    const QString inTheWay = folder() + QStringLiteral("/previous");
    ASSERT_TRUE(QDir().mkpath(inTheWay));
    EXPECT_EQ(finished(), folder() + QStringLiteral("/vorle"));
    EXPECT_EQ(started(), "vorle 1.4.0");
    beginAgain();
    EXPECT_EQ(updater->stage(), Stage::InstallFailed);
    beginAgain();
    EXPECT_EQ(updater->stage(), Stage::Ready) << "told once";
    ASSERT_TRUE(QDir().rmdir(inTheWay));
    finished();
    EXPECT_EQ(started(), "vorle 1.5.0");
}

TEST_F(AppcastEngineTest, a_question_that_nobody_answers_does_not_end_the_daily_check) {
    publish("1.5.0", archive("1.5.0"));
    updater->setWatched(true);
    updater->check();
    waitFor(Stage::Found);
    updater->setWatched(false);
    updater->putAway(); // the view was closed
    waitFor(Stage::Idle);
    clock.moment = clock.moment.addDays(1);
    lookUntil([this] { return updater->stage() == Stage::Found; });
    EXPECT_EQ(told, 1);
    EXPECT_EQ(server.requestCount("/appcast.xml"), 2);

    publish("1.6.0", archive("1.6.0")); // and the notice was never looked at
    clock.moment = clock.moment.addSecs(23 * 3600);
    updater->lookAtClock();
    EXPECT_EQ(updater->found().version, QStringLiteral("1.5.0"));
    EXPECT_EQ(updater->stage(), Stage::Found);
    clock.moment = clock.moment.addSecs(3600);
    lookUntil([this] { return updater->found().version == u"1.6.0"; });
    EXPECT_EQ(told, 2);
    updater->install();
    test::spinUntil([this] { return quits == 1; });
}

} // namespace
} // namespace vorle
