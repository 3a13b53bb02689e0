// How a start finds its place among others, and how the system ends the app: the parts in this
// process, and the program itself.

#include "app/window/Opening.h"
#include "agents/TemporaryFiles.h"
#include "app/window/QuitHandler.h"
#include "app/window/SingleInstance.h"
#include "core/RunHistory.h"
#include "tests/support/Program.h"
#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

#include <gmock/gmock.h>

#include <csignal>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using Outcome = Opening::Outcome;

/// One start of the app, with locks and a socket of its own.
struct Start {
    explicit Start(const QString &file)
        : app(file, StoreLock::Right::BeTheApp)
        , topics(file)
        , instance(file)
        , opening(app, topics, instance, file) {}

    void begin() { detach(follow(this), QStringLiteral("opening")); }
    static Task<> follow(Start *self) {
        try {
            self->outcome = co_await self->opening.begin(self->cancel.token());
        } catch (const Cancelled &) {
            self->gaveUp = true;
        }
    }

    StoreLock app;
    StoreLock topics;
    SingleInstance instance;
    Opening opening;
    CancelSource cancel;
    std::optional<Outcome> outcome;
    bool gaveUp = false;
    QSignalSpy raised{&instance, &SingleInstance::raiseAsked};
};

class OpeningTest : public testing::Test {
protected:
    OpeningTest() { preparePrivateTemporaryDirectory(); } // where the socket lies

    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("topics.json"));
};

TEST_F(OpeningTest, a_second_start_raises_the_first_even_over_what_a_crash_left) {
    EXPECT_FALSE(test::waitFor(SingleInstance::raiseRunning(file)));
    SingleInstance crashed(file); // its socket is there still when the next one listens
    ASSERT_TRUE(crashed.listen());
    Start first(file);
    first.begin();
    test::spinUntil([&] { return first.outcome.has_value(); });
    EXPECT_EQ(first.outcome, Outcome::Open);
    EXPECT_TRUE(first.topics.isHeld());
    Start second(file);
    second.begin();
    test::spinUntil([&] { return second.outcome.has_value(); });
    EXPECT_EQ(second.outcome, Outcome::Raised);
    EXPECT_EQ(first.raised.count(), 1);
    EXPECT_FALSE(second.app.isHeld());
}

TEST_F(OpeningTest, a_socket_that_was_swept_away_is_made_anew_until_the_end) {
    Start first(file);
    first.instance.listenWhereGone();
    EXPECT_FALSE(test::waitFor(SingleInstance::raiseRunning(file))) << "it may not be the app yet";
    first.begin();
    test::spinUntil([&] { return first.outcome.has_value(); });
    QLocalSocket early; // its command goes on
    early.connectToServer(appSocketName(file));
    test::spinUntil([&] { return early.bytesAvailable() > 0; });

    ASSERT_TRUE(QFile::remove(appSocketName(file)));
    EXPECT_FALSE(test::waitFor(SingleInstance::raiseRunning(file)));
    first.instance.listenWhereGone();
    EXPECT_TRUE(test::waitFor(SingleInstance::raiseRunning(file)));
    EXPECT_EQ(early.state(), QLocalSocket::ConnectedState);

    first.instance.close();
    first.instance.listenWhereGone();
    EXPECT_FALSE(QFile::exists(appSocketName(file)));
}

TEST_F(OpeningTest, a_socket_lies_in_the_first_folder_that_leaves_its_path_short_enough) {
    const QString last = appSocketName(file, {QString()});
    const auto path = [](qsizetype bytes) { return u'/' + QString(bytes - 1, u'a'); };
    const qsizetype room = 103 - last.size(); // a Mac's sun_path has 104, with the zero
    const QString accents = u'/' + QString(room / 2, u'é');
    const struct {
        QStringList folders;
        qsizetype taken;
    } cases[] = {
        {{path(room), path(9)}, 0},
        {{path(room + 1), path(9)}, 1},
        {{accents, path(9)}, 1}, // bytes, not characters
        {{path(room + 1), path(200)}, 1},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(appSocketName(file, one.folders), one.folders[one.taken] + last);
    }
    // Two homes, and the demonstration in one of them.
    const QString other = folder.filePath(QStringLiteral("b/topics.json"));
    const QString demo = folder.filePath(QStringLiteral("demo-topics.json"));
    EXPECT_NE(appSocketName(other, {QString()}), last);
    EXPECT_NE(appSocketName(demo, {QString()}), last);
}

TEST_F(OpeningTest, many_starts_at_once_give_one_app_and_each_other_raises_it) {
    std::list<Start> starts;
    for (int i = 0; i < 10; ++i) {
        starts.emplace_back(file);
    }
    for (Start &start : starts) {
        start.begin();
    }
    test::spinUntil([&] {
        return std::ranges::all_of(starts, [](const Start &s) { return s.outcome.has_value(); });
    });
    EXPECT_EQ(std::ranges::count(starts, Outcome::Open, &Start::outcome), 1);
    EXPECT_EQ(starts.front().raised.count(), 9);
}

TEST_F(OpeningTest, waits_for_a_command_and_then_opens_by_itself) {
    StoreLock command(file);
    ASSERT_TRUE(command.tryLock());
    Start first(file);
    QSignalSpy waits(&first.opening, &Opening::waiting);
    first.begin();
    test::spinUntil([&] { return waits.count() == 1; });
    EXPECT_EQ(waits[0][0].value<Opening::Holder>(), Opening::Holder::Command);
    EXPECT_FALSE(first.outcome);

    // A second start raises the one that waits; a command is not asked of it.
    Start second(file);
    second.begin();
    test::spinUntil([&] { return second.outcome.has_value(); });
    EXPECT_EQ(second.outcome, Outcome::Raised);
    EXPECT_EQ(first.raised.count(), 1);
    QLocalSocket caller;
    caller.connectToServer(appSocketName(file));
    QByteArray greeting;
    test::spinUntil([&] {
        greeting += caller.readAll();
        return greeting.contains('}');
    });
    EXPECT_THAT(greeting.toStdString(), HasSubstr("waiting"));

    command.release();
    test::spinUntil([&] { return first.outcome.has_value(); });
    EXPECT_EQ(first.outcome, Outcome::Open);
    EXPECT_EQ(waits.count(), 1);
}

TEST_F(OpeningTest, one_that_is_opening_or_ending_is_neither_missed_nor_mistaken) {
    // It has the right, and does not listen yet.
    auto first = std::make_unique<Start>(file);
    ASSERT_TRUE(first->app.tryLock());
    Start second(file);
    second.begin();
    QSignalSpy waits(&second.opening, &Opening::waiting);
    test::spinUntil([&] { return waits.count() == 1; });
    EXPECT_EQ(waits[0][0].value<Opening::Holder>(), Opening::Holder::App);
    EXPECT_FALSE(second.outcome);
    // It ends: whoever connected is not told that a window comes.
    first->instance.listen();
    first->instance.close();
    EXPECT_FALSE(test::waitFor(SingleInstance::raiseRunning(file)));
    first.reset();
    test::spinUntil([&] { return second.outcome.has_value(); });
    EXPECT_EQ(second.outcome, Outcome::Open);

    // Who does not want to wait holds nothing up.
    Start third(file);
    second.instance.close();
    third.begin();
    third.cancel.cancel();
    test::spinUntil([&] { return third.gaveUp; });
    EXPECT_FALSE(third.app.isHeld());
    EXPECT_FALSE(third.outcome);
}

TEST(QuitHandler, the_systems_quit_waits_until_the_program_has_left) {
    QuitHandler door;
    int asked = 0;
    bool left = false;
    QObject::connect(&door, &QuitHandler::quitAsked, [&] {
        ++asked;
        QTimer::singleShot(50ms, &door, [&] {
            left = true;
            door.left();
        });
    });
    // What the Dock, ⌘Q, a session's end and QCoreApplication::quit() come to.
    for (int time = 0; time < 2; ++time) {
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &quit);
        EXPECT_EQ(asked, 1);
        EXPECT_TRUE(left);
        EXPECT_TRUE(quit.isAccepted());
    }
}

TEST(Program, several_starts_at_once_leave_one_and_its_end_keeps_run_and_place) {
    test::Program vorle;
    vorle.agent.answerBy(R"({"candidates":{"":"hang"}})");
    test::writeFile(vorle.settingsFile(), R"({"interests":["Rust"]})");
    vorle.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    const auto runs = [](const QProcess *process) {
        return process->state() != QProcess::NotRunning;
    };
    QList<QProcess *> started;
    for (int i = 0; i < 4; ++i) {
        started += &vorle.start("");
    }
    test::spinUntil([&] { return std::ranges::count_if(started, runs) == 1; }, 110s);
    QProcess *app = nullptr;
    for (QProcess *process : started) {
        if (runs(process)) {
            app = process;
        } else {
            EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardError().toStdString();
        }
    }
    ASSERT_NE(app, nullptr);

    const QProcess &run = vorle.start("fouille");
    test::spinUntil([&] { return vorle.agent.living() > 0; }, 60s);
    ::kill(pid_t(app->processId()), SIGTERM);
    test::spinUntil([&] { return !runs(app) && !runs(&run); }, 60s);
    EXPECT_EQ(app->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(app->exitCode(), 0);
    EXPECT_EQ(run.exitCode(), 1);
    EXPECT_TRUE(QFile::exists(vorle.path("data/vorle/window.json")));
    const auto reports = RunHistory(vorle.topicsFile()).reports();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_TRUE(reports.first().cancelled);
}

} // namespace
} // namespace vorle
