#include "app/models/RunModel.h"
#include "app/models/ReportModel.h"
#include "tests/core/Samples.h"
#include "tests/search/run/RunParts.h"
#include "tests/support/TestServer.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;

using test::text;

class RunModelTest : public testing::Test {
protected:
    void signIn(double seconds = 0) {
        claude.signIn();
        server.serve("/page", test::TestReply::page(test::RunParts::page("une")));
        claude.answerBy(
            text(R"({"candidates":{"Topics the person":[{"title":"Un titre","url":"%1",)"
                 R"("kind":"article","about":"Rust"}]},"judge":"ok","seconds":%2,"dig":{}})")
                .arg(server.link("/page"))
                .arg(seconds)
                .toUtf8());
    }
    void untilEnded() {
        test::spinUntil([this] { return !model->running(); }, 60s);
    }

    QTimeZone zone = QTimeZone::utc();
    test::FixedClock clock; // Monday 2 November 2026, 9:30
    test::RunParts parts{clock, LocalZone([this] { return zone; })};
    const QTemporaryDir &folder = parts.folder;
    const test::ScriptedAgent &claude = parts.claude;
    test::TestServer &server = parts.server;
    Preferences &preferences = parts.preferences;
    TopicStore &store = parts.store;
    SearchEngine &engine = parts.engine;
    std::unique_ptr<RunModel> model = std::make_unique<RunModel>(
        engine, preferences, store, clock, LocalZone([this] { return zone; }));
};

TEST_F(RunModelTest, says_why_a_run_cannot_start) {
    model->start();
    untilEnded();
    EXPECT_TRUE(model->lastError().startsWith(text("Rien à fouiller\u00A0: ")))
        << model->lastError().toStdString();
    const QString refused = model->lastError();
    preferences.change(&Settings::interests, {text("Rust")});
    model->start();
    untilEnded();
    EXPECT_FALSE(model->lastError().isEmpty()); // the agent is not installed
    EXPECT_EQ(model->lastErrorTitle(), text("Je n’ai pas pu fouiller."));
    EXPECT_NE(model->lastError(), refused);
    EXPECT_TRUE(model->lastResultText().isEmpty());

    // The one of the schedule says nothing where it would be refused: nobody asked for it.
    preferences.change(&Settings::interests, {});
    preferences.change(&Settings::projects, {{text("Parti"), folder.filePath(text("parti"))}});
    const QString told = model->lastError();
    QSignalSpy ends(model.get(), &RunModel::ended);
    model->startDue();
    EXPECT_EQ(engine.phase(), SearchEngine::Phase::Searching) << "the folder is asked";
    test::spinUntil([&] { return engine.phase() == SearchEngine::Phase::Idle; });
    EXPECT_EQ(ends.count(), 0);
    EXPECT_EQ(model->lastError(), told);
    model->start();
    test::spinUntil([&] { return ends.count() == 1; });
    EXPECT_TRUE(model->nothingToSearch());
    EXPECT_TRUE(model->lastError().contains(text("parti"))) << model->lastError().toStdString();
    ends.clear();
    preferences.change(&Settings::interests, {text("Rust")});
    model->startDue();
    test::spinUntil([&] { return ends.count() == 1; });
}

TEST_F(RunModelTest, runs_and_tells_what_came_of_it) {
    signIn();
    preferences.change(&Settings::interests, {text("Rust")});
    ReportModel reports(RunHistory(store.file()), clock, QTimeZone::utc());
    const QAbstractItemModelTester tester(&reports,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    double last = 0;
    int steps = 0;
    QString counts;
    QObject::connect(model.get(), &RunModel::progressChanged, [&] {
        if (model->running()) {
            EXPECT_GE(model->progress(), last);
            last = model->progress();
            counts = model->countsText();
            ++steps;
        }
    });
    model->start();
    EXPECT_TRUE(model->running());
    model->start(); // one at a time
    untilEnded();
    EXPECT_EQ(model->lastError(), QString());
    EXPECT_EQ(model->lastResultText(), text("1 nouveau sujet dans «\u202FÀ trier\u202F»."));
    EXPECT_GT(steps, 2);
    EXPECT_EQ(counts, text("1 lien, 1 lu, 1 jugé"));
    EXPECT_DOUBLE_EQ(last, 1);
    EXPECT_FALSE(model->running());
    EXPECT_EQ(model->lastRunText(), text("lundi 2 novembre à 9:30"));

    reports.refresh();
    ASSERT_EQ(reports.count(), 1);
    EXPECT_EQ(reports.index(0).data(ReportModel::AddedText), text("1 sujet"));
    EXPECT_EQ(reports.index(0).data(ReportModel::DateText), text("lundi 2 novembre à 9:30"));
    EXPECT_TRUE(reports.index(0)
                    .data(ReportModel::FactsText)
                    .toString()
                    .startsWith(text("1 lien trouvé · 1 page lue · ")));
}

TEST_F(RunModelTest, is_stopped_before_the_program_quits) {
    signIn(20);
    preferences.change(&Settings::interests, {text("Rust")});
    model->start();
    test::spinUntil([&] { return !model->statusText().isEmpty(); });
    test::waitFor(model->stopped());
    EXPECT_FALSE(model->running());
    EXPECT_EQ(engine.phase(), SearchEngine::Phase::Idle);
    EXPECT_EQ(model->lastResultText(), text("Fouille arrêtée\u00A0: rien n’était encore jugé."));
    EXPECT_EQ(model->lastError(), QString());

    // The window's own end stops its run, which ends without it.
    model->start();
    test::spinUntil([&] { return engine.phase() != SearchEngine::Phase::Idle; });
    model.reset();
    test::spinUntil([&] { return engine.phase() == SearchEngine::Phase::Idle; });
}

TEST_F(RunModelTest, shows_and_stops_a_run_that_was_asked_for_elsewhere) {
    signIn(20);
    preferences.change(&Settings::interests, {text("Rust")});
    int ends = 0;
    QObject::connect(model.get(), &RunModel::ended, [&] { ++ends; });
    const QSignalSpy turns(model.get(), &RunModel::runningChanged);
    Task<RunReport> run = engine.run(CancelToken());
    EXPECT_TRUE(model->running());
    test::spinUntil([&] { return !model->statusText().isEmpty(); });
    model->start(); // shows that one
    model->stop();
    EXPECT_TRUE(test::waitFor(std::move(run)).cancelled);
    EXPECT_FALSE(model->running());
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(turns.count(), 2); // who looks for its begin and end must not hear each step
    EXPECT_EQ(model->lastResultText(), text("Fouille arrêtée\u00A0: rien n’était encore jugé."));
}

// From the agent's limit to the end of the rest, as the window shows it.
TEST_F(RunModelTest, shows_what_a_limited_run_left_and_goes_on_with_it) {
    preferences.change(&Settings::interests, {text("Rust")});
    signIn();
    const QByteArray table = test::readFile(claude.home() + QStringLiteral("/table.json"));
    const auto limitedBy = [&](const char *words) {
        claude.answerBy(QByteArray(table).replace("{\"candidates\"",
                                                  "{\"limit\":{\"step\":\"judge\",\"words\":\"" +
                                                      QByteArray(words) + "\"},\"candidates\""));
    };
    limitedBy("You've hit your limit · resets 1pm (UTC)");
    QString spent;
    QObject::connect(model.get(), &RunModel::spentChanged,
                     [&] { spent = model->spentText().isEmpty() ? spent : model->spentText(); });
    model->start();
    untilEnded();
    EXPECT_TRUE(spent.startsWith(text("2 appels · "))) << spent.toStdString();
    EXPECT_EQ(model->spentText(), QString());
    EXPECT_EQ(model->lastResultText(),
              text("Rien de nouveau pour l’instant. La suite aujourd’hui à 13:00."));
    EXPECT_EQ(model->lastError(), QString());
    EXPECT_TRUE(model->waiting());
    EXPECT_FALSE(model->waitingOffered()) << "it goes on by itself";
    EXPECT_EQ(model->waitingBriefly(), text("La suite aujourd’hui à 13:00"));
    EXPECT_EQ(model->waitingTitle(), text("Claude Code a atteint sa limite."));
    EXPECT_FALSE(model->missed());

    clock.moment = clock.moment.addDays(1); // far too late
    EXPECT_TRUE(model->waitingOffered());
    EXPECT_EQ(model->waitingText(),
              text("La suite de la fouille d’hier devait reprendre lundi 2 novembre à 13:00\u00A0: "
                   "il reste 1 lien à juger."));
    // So many parts without an answer, and it does not go on by itself, whatever the hour.
    limitedBy("You've hit your limit · resets 1pm (UTC)");
    for (int part = 1; part <= 3; ++part) {
        EXPECT_FALSE(model->lastResultText().contains(u"quand tu veux"));
        model->goOn();
        untilEnded();
    }
    EXPECT_EQ(model->lastResultText(),
              text("Rien de nouveau pour l’instant. La suite quand tu veux."));
    EXPECT_TRUE(model->waitingOffered());
    EXPECT_EQ(
        model->waitingText(),
        text("Plusieurs reprises sont restées sans réponse. Je continue quand tu veux (limite "
             "levée aujourd’hui à 13:00)\u00A0: il reste 1 lien à juger."));
    claude.answerBy(table);
    model->giveUpRest();
    limitedBy("API Error: Rate limit reached");
    model->start();
    untilEnded();
    EXPECT_EQ(model->waitingText(), text("Il ne dit pas jusqu’à quand. Je garde tout\u00A0: il "
                                         "reste 1 lien à juger."));
    EXPECT_TRUE(model->waitingOffered());
    EXPECT_EQ(model->waitingBriefly(), text("La suite quand tu veux"));

    claude.signOut();
    model->goOn();
    untilEnded();
    EXPECT_TRUE(model->lastError().startsWith(text("Claude Code n’est plus connecté.")));
    EXPECT_EQ(model->waitingText(), text("Je garde tout, et je continue quand tu veux\u00A0: il "
                                         "reste 1 lien à juger."));
    claude.signIn();
    claude.answerBy(table);
    model->goOn();
    untilEnded();
    EXPECT_FALSE(model->waiting());
    EXPECT_EQ(model->lastResultText(), text("1 nouveau sujet dans «\u202FÀ trier\u202F»."));
    EXPECT_EQ(store.history().size(), 2);

    limitedBy("API Error: Rate limit reached");
    server.serve("/other", test::TestReply::page(test::RunParts::page("autre")));
    claude.answerBy(test::readFile(claude.home() + QStringLiteral("/table.json"))
                        .replace("/page\"", "/other\""));
    model->start();
    untilEnded();
    ASSERT_TRUE(model->waitingOffered());
    model->giveUpRest();
    EXPECT_FALSE(model->waiting());
}

TEST_F(RunModelTest, knows_the_next_run_and_the_missed_one) {
    const auto at = [](int day, int hour) {
        return QDateTime(QDate(2026, 11, day), QTime(hour, 0), Qt::UTC);
    };
    struct Case {
        QDateTime now;
        const char *next;
        const char *missed;
    };
    preferences.change(&Settings::interests, {text("Rust")});
    preferences.change(&Settings::lastSearch, at(2, 9));
    const Case cases[] = {
        {at(2, 10), "lundi prochain à 8:00", ""},
        {at(3, 10), "lundi à 8:00", ""},
        {at(8, 23), "demain à 8:00", ""},
        {at(9, 7), "aujourd’hui à 8:00", ""},
        {at(9, 8), "lundi prochain à 8:00", "La fouille de lundi 9 novembre n’a pas eu lieu."},
        {at(25, 8), "lundi à 8:00", "La fouille de lundi 9 novembre n’a pas eu lieu."},
    };
    for (const Case &each : cases) {
        clock.moment = each.now;
        EXPECT_EQ(model->nextRunText(), text(each.next));
        EXPECT_EQ(model->missedTitle(), text(each.missed));
        EXPECT_EQ(model->missed(), *each.missed != '\0');
    }
    // What kept it from being is told as it was, after a restart too.
    const auto why = [&](QDateTime when, bool cancelled, std::optional<QString> failed) {
        RunReport report;
        report.date = std::move(when);
        report.cancelled = cancelled;
        report.failed = std::move(failed);
        store.addRun(report);
        return model->missedText();
    };
    const QString off = text("Ton Mac était éteint");
    EXPECT_TRUE(why(at(2, 9), false, {}).startsWith(off));
    EXPECT_TRUE(why(at(9, 8), true, {}).startsWith(text("Elle a été arrêtée")));
    EXPECT_TRUE(why(at(9, 9), false, text("panne")).startsWith(text("Je n’ai pas pu fouiller.")));
    RunReport unsaved;
    unsaved.date = at(9, 10);
    unsaved.saved = false;
    store.addRun(unsaved);
    EXPECT_TRUE(model->missedText().startsWith(text("Les sujets trouvés n’ont pas pu être")));
    preferences.change(&Settings::interests, {});
    EXPECT_FALSE(model->missed()) << "nothing was to be searched";
    store.addRun([&] {
        RunReport old;
        old.date = at(2, 9);
        return old;
    }());
    clock.moment = at(25, 8);
    model->startDue(); // the app was open, and there was nothing to search
    preferences.change(&Settings::interests, {text("Rust")});
    EXPECT_TRUE(model->missed());
    EXPECT_TRUE(model->missedText().startsWith(text("Il n’y avait rien à fouiller")));
    RunReport many;
    many.date = at(10, 9);
    many.unjudged =
        QList<DroppedLink>(1430, {text("Page"), text("https://example.org/"), text("panne")});
    store.addRun(many);
    const ReportModel reports(RunHistory(store.file()), clock, QTimeZone::utc());
    EXPECT_TRUE(reports.index(0)
                    .data(ReportModel::Notices)
                    .toStringList()
                    .contains(text("Liens non jugés\u00A0: 1\u202F430. panne")));
    QSignalSpy changes(model.get(), &RunModel::scheduleChanged);
    preferences.change(&Settings::schedule, Schedule{{}, 8, 0});
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(model->nextRunText(), QString());
    preferences.change(&Settings::lastSearch, std::nullopt);
    EXPECT_FALSE(model->missed());
}

// The same Monday shows its 8:00 again further west: its run was made before the flight.
TEST_F(RunModelTest, a_flight_west_makes_no_missed_run_of_one_that_was_made) {
    signIn();
    preferences.change(&Settings::interests, {text("Rust")});
    zone = QTimeZone("Europe/Paris"); // 10:30 there
    model->start();
    untilEnded();
    ASSERT_TRUE(preferences.settings().lastSearch);
    zone = QTimeZone("Pacific/Honolulu"); // 23:30 of the Sunday
    EXPECT_EQ(model->nextRunText(), text("lundi 9 novembre à 8:00"));
    clock.moment = clock.moment.addSecs(10 * 3600); // Monday 9:30
    EXPECT_FALSE(model->missed());
    clock.moment = clock.moment.addDays(7);
    EXPECT_EQ(model->missedTitle(), text("La fouille de lundi 9 novembre n’a pas eu lieu."));
}

} // namespace
} // namespace vorle
