// What the person is shown of an update and may answer, whatever engine does the work.

#include "update/Updater.h"

#include "base/Log.h"
#include "platform/fakes/FakeUpdateEngine.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using Choice = UpdateDriver::Choice;
using Stage = Updater::Stage;

class UpdaterTest : public testing::Test {
protected:
    UpdaterTest() {
        QObject::connect(&updater, &Updater::told, &updater,
                         [this](const QString &sentence) { told += sentence; });
    }
    UpdateDriver &driver() { return *engine.driver; }
    UpdateDriver::Reply reply() {
        return [this](Choice choice) { choices += choice; };
    }
    std::function<void()> counted(int &count) {
        return [&count] { ++count; };
    }
    /// The last lines of the log that are about updates, without their prefix.
    static QStringList logged(qsizetype count) {
        QStringList lines;
        for (const QString &line : recentLogLines()) {
            if (line.startsWith(u"updates: ")) {
                lines += line.sliced(9);
            }
        }
        return lines.last(std::min(count, lines.size()));
    }

    test::FakeUpdateEngine engine;
    bool busy = false;
    SystemClock clock;
    Updater updater{{.engine = engine,
                     .clock = clock,
                     .version = QStringLiteral("1.4.2"),
                     .busy = [this] { return busy ? QStringLiteral("Ça tourne") : QString(); },
                     .countdown = std::chrono::milliseconds(1)}};
    QList<Choice> choices;
    QStringList told;
};

TEST_F(UpdaterTest, goes_from_a_check_to_a_relaunch_and_tells_each_step) {
    int stopped = 0;
    updater.setWatched(true);
    updater.check();
    EXPECT_EQ(engine.checks, 1);
    driver().showUserInitiatedCheck(counted(stopped));
    EXPECT_EQ(updater.stage(), Stage::Checking);
    driver().showFound({QStringLiteral("1.5.0"), QStringLiteral("Du neuf."), false}, reply());
    EXPECT_EQ(updater.title(), QStringLiteral("vorle 1.5.0"));
    EXPECT_TRUE(told.isEmpty()) << "the view says so";
    updater.install();
    updater.install();
    EXPECT_EQ(choices, QList<Choice>{Choice::Install}) << "a reply is given once";

    driver().showDownloadInitiated(counted(stopped));
    EXPECT_EQ(updater.title(), QStringLiteral("Téléchargement…"));
    EXPECT_EQ(updater.text(), QStringLiteral("Tu peux continuer, je m’en occupe."));
    EXPECT_LT(updater.progress(), 0);
    driver().showExpectedBytes(400);
    driver().showReceivedBytes(100);
    EXPECT_DOUBLE_EQ(updater.progress(), 0.25);
    driver().showReceivedBytes(900);
    EXPECT_DOUBLE_EQ(updater.progress(), 1) << "more than was announced";
    driver().showExtractionStarted();
    driver().showExtractionProgress(0.5);
    EXPECT_DOUBLE_EQ(updater.progress(), 0.5);
    driver().showReady(reply());
    EXPECT_EQ(updater.title(), QStringLiteral("Une nouvelle version est prête."));
    EXPECT_EQ(updater.text(), QStringLiteral("Prête, vorle se relance en 3 secondes."));
    driver().dismissed();
    EXPECT_EQ(updater.stage(), Stage::Ready) << "what waits for the person stays";
    test::spinUntil([this] { return choices.size() == 2; });
    EXPECT_EQ(choices.last(), Choice::Install);
    int ended = 0;
    driver().showInstalling(false, counted(ended));
    EXPECT_EQ(ended, 0) << "the engine has it end";
    updater.relaunch(); // it did not
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(stopped, 0);
    const QStringList lines = logged(20);
    EXPECT_TRUE(lines.contains(QStringLiteral("received 100 bytes")));
    EXPECT_TRUE(lines.contains(QStringLiteral("unpacked 5 tenths")));
    EXPECT_EQ(logged(3), (QStringList{QStringLiteral("ready"), QStringLiteral("done"),
                                      QStringLiteral("installing, the program is to end")}));
}

TEST_F(UpdaterTest, each_end_says_what_it_is_and_only_to_who_asked) {
    int acknowledged = 0;
    struct Case {
        bool asked;
        bool installing;
        bool error;
        Stage stage;
        const char *title;
        const char *text;
    };
    for (const Case &each : {
             Case{true, false, false, Stage::UpToDate, "1.4.2 est la dernière version.", ""},
             Case{false, false, false, Stage::Idle, "", ""},
             Case{true, false, true, Stage::CheckFailed, "Je n’ai pas pu vérifier les mises à jour",
                  "Vérifie ta connexion à Internet, puis réessaie."},
             Case{false, false, true, Stage::Idle, "", ""},
             Case{false, true, true, Stage::InstallFailed, "La mise à jour n’a pas pu s’installer",
                  "vorle reste dans sa version actuelle. Je réessaierai à la prochaine "
                  "vérification."},
         }) {
        SCOPED_TRACE(each.title);
        if (each.asked) {
            driver().showUserInitiatedCheck([] {});
        }
        if (each.installing) {
            driver().showFound({QStringLiteral("1.5.0"), {}, false}, reply());
            updater.install();
        }
        acknowledged = 0;
        if (each.error) {
            driver().showError(QStringLiteral("no network"), counted(acknowledged));
        } else {
            driver().showNotFound(QStringLiteral("newest"), counted(acknowledged));
        }
        driver().dismissed();
        EXPECT_EQ(updater.stage(), each.stage);
        EXPECT_EQ(updater.title(), QString::fromUtf8(each.title));
        EXPECT_EQ(updater.text(), QString::fromUtf8(each.text));
        updater.acknowledge();
        updater.acknowledge();
        EXPECT_EQ(acknowledged, 1);
        EXPECT_EQ(updater.stage(), Stage::Idle);
    }
}

TEST_F(UpdaterTest, what_was_asked_for_is_told_where_the_view_was_put_away_meanwhile) {
    const struct {
        std::function<void()> comes;
        const char *sentence;
    } cases[] = {
        {[this] { driver().showFound({QStringLiteral("1.5.0"), {}, false}, reply()); },
         "vorle 1.5.0 est là."},
        {[this] {
             driver().showDownloadInitiated([] {});
             driver().showError(QStringLiteral("a bad signature"), [] {});
         },
         "La mise à jour n’a pas pu s’installer"},
        {[this] { driver().showHeldElsewhere(); }, "Une mise à jour est en cours"},
        {[this] {
             driver().showInstalling(false, [] {});
             driver().showError(QStringLiteral("no room"), [] {});
         },
         "La mise à jour n’a pas pu s’installer"},
    };
    for (const bool watched : {true, false}) {
        for (const auto &each : cases) {
            told.clear();
            updater.setWatched(true);
            updater.check();
            driver().showUserInitiatedCheck([] {});
            updater.setWatched(watched);
            each.comes();
            EXPECT_EQ(told,
                      watched ? QStringList() : QStringList(QString::fromUtf8(each.sentence)));
            updater.skip();
            updater.acknowledge();
            driver().dismissed();
        }
    }
}

TEST_F(UpdaterTest, what_comes_by_itself_is_told_and_waits) {
    driver().showFound({QStringLiteral("1.5.0"), {}, false}, reply());
    EXPECT_EQ(told, QStringList{QStringLiteral("vorle 1.5.0 est là.")});
    updater.skip();
    EXPECT_EQ(choices, QList<Choice>{Choice::Skip});
    EXPECT_EQ(updater.stage(), Stage::Idle);

    driver().showReady(reply()); // fetched by itself
    EXPECT_FALSE(updater.isCountingDown()) << "nobody asked for a relaunch";
    EXPECT_EQ(told.size(), 2);
    EXPECT_EQ(updater.text(), QStringLiteral("Elle s’installera quand tu quitteras vorle."));
    updater.relaunch();
    EXPECT_EQ(choices.last(), Choice::Install);

    driver().showTakenBack(QStringLiteral("1.5.0"));
    EXPECT_EQ(told.size(), 3);
    int acknowledged = 0;
    driver().showNotFound({}, counted(acknowledged)); // a check by itself, before it was read
    driver().showError(QStringLiteral("no network"), counted(acknowledged));
    EXPECT_EQ(acknowledged, 2);
    EXPECT_EQ(updater.stage(), Stage::InstallFailed);
    updater.acknowledge();
    driver().showDownloadInitiated([] {}); // by itself
    driver().showError(QStringLiteral("a bad signature"), [] {});
    EXPECT_EQ(updater.stage(), Stage::InstallFailed);
    EXPECT_EQ(told.value(3), QStringLiteral("La mise à jour n’a pas pu s’installer"));
}

TEST_F(UpdaterTest, a_relaunch_is_put_off_by_the_person_or_by_a_run_and_can_still_be_had) {
    for (const bool run : {false, true}) {
        busy = run;
        choices.clear();
        engine.checks = 0;
        driver().showFound({QStringLiteral("1.5.0"), {}, false}, reply());
        updater.install();
        driver().showReady(reply());
        EXPECT_EQ(updater.isCountingDown(), !run);
        EXPECT_EQ(updater.text().contains(QStringLiteral("Ça tourne\u00A0: je ne me relance pas")),
                  run);
        EXPECT_EQ(told.last(), updater.text()) << "who asked for it may look elsewhere";
        if (run) {
            busy = false;
            driver().showReady(reply()); // told again, a day later
            EXPECT_FALSE(updater.isCountingDown()) << "who pressed the button is long gone";
        }
        updater.putOff();
        EXPECT_EQ(choices, (QList<Choice>{Choice::Install, Choice::Dismiss}));
        EXPECT_FALSE(updater.isCountingDown());
        EXPECT_EQ(updater.stage(), Stage::Ready);
        updater.relaunch();
        EXPECT_EQ(engine.checks, 1) << "the engine is asked to offer it once more";
        busy = run;
        driver().showFound({QStringLiteral("1.5.0"), {}, true}, reply()); // as some engines do
        driver().showReady(reply());
        EXPECT_EQ(choices.size(), 4) << "who asks anew is not asked again";
        EXPECT_EQ(choices.last(), Choice::Install);
        driver().showError(QStringLiteral("no room"), [] {});
        driver().dismissed();
        updater.acknowledge();
    }
}

TEST_F(UpdaterTest, a_relaunch_that_was_asked_for_is_of_that_version_alone) {
    const std::function<void()> answers[] = {
        [&] { driver().showFound({QStringLiteral("1.6.0"), {}, false}, reply()); },
        [&] { driver().showNotFound({}, [] {}); },
        [&] { driver().showHeldElsewhere(); },
        [&] { driver().dismissed(); },
        [&] { updater.cancel(); },
    };
    for (const auto &answer : answers) {
        driver().showReady(reply());
        updater.putOff();
        updater.relaunch();
        driver().showUserInitiatedCheck([] {});
        answer();
        choices.clear();
        driver().showReady(reply()); // of another version, later
        EXPECT_TRUE(choices.isEmpty()) << &answer - answers;
        EXPECT_EQ(updater.stage(), Stage::Ready);
        updater.putOff();
    }
}

TEST_F(UpdaterTest, what_begins_while_it_counts_down_is_not_broken_off) {
    driver().showFound({QStringLiteral("1.5.0"), {}, false}, reply());
    updater.install();
    driver().showReady(reply());
    ASSERT_TRUE(updater.isCountingDown());
    busy = true;
    updater.setWatched(true);
    const auto before = told.size();
    test::spinUntil([this] { return !updater.isCountingDown(); });
    EXPECT_EQ(updater.stage(), Stage::Ready);
    EXPECT_TRUE(updater.text().startsWith(QStringLiteral("Ça tourne")));
    EXPECT_EQ(told.size(), before) << "the view says so";
    EXPECT_EQ(choices, QList<Choice>{Choice::Install}) << "to the question before";
    updater.relaunch();
    EXPECT_EQ(choices.size(), 2) << "who says so knows of it";
    driver().showInstalling(false, [] {});
    driver().showError(QStringLiteral("no room"), [] {});
    EXPECT_EQ(updater.stage(), Stage::InstallFailed);
}

TEST_F(UpdaterTest, a_stop_ends_the_engines_work_once_and_shows_no_failure) {
    int stopped = 0;
    driver().showUserInitiatedCheck(counted(stopped));
    updater.cancel();
    updater.cancel();
    EXPECT_EQ(stopped, 1);
    driver().dismissed();
    EXPECT_EQ(updater.stage(), Stage::Idle);
    driver().showExtractionProgress(0.5); // on its way when it was stopped
    EXPECT_EQ(updater.stage(), Stage::Idle);
}

TEST_F(UpdaterTest, permission_is_asked_for_beside_the_rest_and_answered_once) {
    QList<bool> answers;
    driver().showPermissionRequest([&](bool daily) { answers += daily; });
    driver().showNotFound({}, [] {});
    EXPECT_TRUE(updater.isPermissionWanted());
    updater.allow(true);
    updater.allow(false);
    EXPECT_EQ(answers, QList<bool>{true});
    driver().showPermissionRequest([&](bool daily) { answers += daily; });
    updater.setChecksByItself(false); // by the settings' switch: it is an answer too
    EXPECT_FALSE(updater.isPermissionWanted());
    EXPECT_EQ(answers, (QList<bool>{true, false}));
    updater.setChecksByItself(true); // with no question open
    EXPECT_TRUE(engine.daily);
    updater.setInstallsByItself(true);
    updater.setInstallsByItself(false);
    EXPECT_TRUE(engine.daily) << "that was allowed before";
    updater.setInstallsByItself(true);
    updater.setChecksByItself(false);
    EXPECT_FALSE(engine.installs) << "nothing would come of it";

    driver().showPermissionRequest([&](bool daily) { answers += daily; });
    updater.setInstallsByItself(true);
    EXPECT_TRUE(engine.daily) << "nothing would come otherwise";
    EXPECT_FALSE(updater.isPermissionWanted());
    updater.setInstallsByItself(false);
    EXPECT_FALSE(engine.daily) << "it was for that alone";
    EXPECT_TRUE(updater.isPermissionWanted());

    updater.followSettings(true); // answered in a terminal
    EXPECT_FALSE(updater.isPermissionWanted());
    updater.allow(true);
    EXPECT_EQ(answers.size(), 2) << "it would write over that";

    engine.why = QStringLiteral("Non.");
    updater.check();
    EXPECT_EQ(engine.checks, 0);
    EXPECT_EQ(updater.obstacle(), QStringLiteral("Non."));
}

} // namespace
} // namespace vorle
