#include "search/run/ScreenedItems.h"
#include "storage/DurableFile.h"
#include "tests/search/run/RunFixture.h"

#include <QFileInfo>
#include <QTimer>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using test::candidate;
using test::list;

class RunFaultsTest : public test::RunFixture {};

TEST_F(RunFaultsTest, a_failing_scope_is_reported_and_the_others_go_on) {
    scenario(QStringLiteral("\"fail\""), list({candidate(at("/long"), "Rust")}), "fail-once");
    const RunReport report = run();
    EXPECT_EQ(inbox().size(), 1);
    EXPECT_EQ(report.scopes[0].error, u"L’IA s’est arrêtée (code 3). le serveur est occupé");
}

// An error without a word is one all the same: no second search is paid for, and the run tells it.
TEST_F(RunFaultsTest, a_blank_error_is_an_error) {
    const QString told = QStringLiteral("erreur de l’agent");
    secondAnswer = list({candidate(at("/other"), "Rust")});
    scenario(list({candidate(at("/long"), "Rust")}), QStringLiteral("\"blank\""));
    const RunReport report = run();
    ASSERT_EQ(report.scopes.size(), 2) << "nothing was searched again";
    EXPECT_EQ(report.scopes[1].error, told);
    EXPECT_EQ(inbox().size(), 1);

    scenario(QStringLiteral("\"blank\""), QStringLiteral("\"blank\""));
    EXPECT_THROW(run(), AgentError);
    EXPECT_EQ(store.history().last().failed, told);
    EXPECT_EQ(engine.progress().status, u"Je n’ai pas pu fouiller. erreur de l’agent");
}

TEST_F(RunFaultsTest, a_run_fails_when_every_scope_or_every_judgment_did) {
    QList<RunFailure> failures;
    QObject::connect(&engine, &SearchEngine::failed,
                     [&](const RunFailure &failure) { failures += failure; });
    // Trusted sites that nobody reaches are no answer either.
    preferences.change(&Settings::prioritySites, {PrioritySite{at("/none"), {}, {}}});
    scenario(QStringLiteral("\"prose\""), QStringLiteral("\"prose\""));
    EXPECT_THROW(run(), AgentError);
    EXPECT_EQ(engine.progress().status, u"Je n’ai pas pu fouiller. réponse du moteur illisible");
    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}), "fail");
    EXPECT_THROW(run(), AgentError);
    ASSERT_EQ(failures.size(), 2);
    EXPECT_EQ(failures[0].text, u"réponse du moteur illisible");
    EXPECT_TRUE(failures[1].text.contains(u"le serveur est occupé"));
    EXPECT_FALSE(preferences.settings().lastSearch) << "a failed run leaves the last date alone";
    EXPECT_FALSE(preferences.settings().lastReport);
    const QList<RunReport> kept = store.history();
    ASSERT_EQ(kept.size(), 2) << "what it cost is told all the same";
    EXPECT_EQ(kept[0].failed, failures[0].text);
    EXPECT_TRUE(std::ranges::all_of(
        kept[0].scopes, [](const ScopeReport &scope) { return !scope.error.isEmpty(); }));
    EXPECT_DOUBLE_EQ(kept[1].costUSD, 0.75);

    claude.signOut();
    EXPECT_THROW(run(), AgentError);
    EXPECT_EQ(failures[2].text, u"Claude Code n’est plus connecté.");
    const QString agentFile = folder.filePath(QStringLiteral("home/.local/bin/claude"));
    ASSERT_TRUE(QFile::rename(agentFile, agentFile + u'~'));
    EXPECT_THROW(run(), AgentError);
    EXPECT_THROW(run(), AgentError); // the same again: one report is enough
    ASSERT_TRUE(QFile::rename(agentFile + u'~', agentFile));
    ASSERT_EQ(failures.size(), 5);
    const QList<RunReport> all = store.history();
    ASSERT_EQ(all.size(), 4) << "nor is one that could not be made forgotten";
    EXPECT_EQ(all[2].failed, failures[2].text);
    EXPECT_EQ(all[3].failed, failures[3].text);
    EXPECT_EQ(all[3].added, 0);
    EXPECT_EQ(failureNotice(failures[2]),
              (FailureNotice{QStringLiteral("Je n’ai pas pu fouiller."),
                             QStringLiteral("Claude Code n’est plus connecté. Ouvre vorle pour te "
                                            "reconnecter.")}));
    EXPECT_EQ(failureNotice(failures[0]).text, failures[0].text);
    EXPECT_EQ(engine.phase(), SearchEngine::Phase::Idle);

    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}), "silent");
    claude.signIn();
    EXPECT_EQ(run().unjudged.size(), 1) << "a judge that answers for nobody is no failure";
    EXPECT_TRUE(preferences.settings().lastSearch);
}

// Twelve links make two batches; the second judgment is cut off by the stop.
TEST_F(RunFaultsTest, a_stop_keeps_what_was_judged_and_leaves_no_process) {
    QStringList links;
    for (int i = 0; i < 24; ++i) {
        const QByteArray path = "/p" + QByteArray::number(i);
        server.serve(path, test::TestReply::page(page("p")));
        links += candidate(server.link(path), "Rust");
    }
    scenario(QStringLiteral("[]"), list(links), "ok", 0.3);
    QObject::connect(&engine, &SearchEngine::progressed, [&](const RunProgress &progress) {
        if (progress.judged > 0) {
            stop.cancel();
        }
    });
    const RunReport report = run();
    EXPECT_TRUE(report.cancelled);
    EXPECT_GE(inbox().size(), 8);
    EXPECT_LT(inbox().size(), 24);
    EXPECT_EQ(store.topics(TopicStatus::Pending).size(), 0);
    EXPECT_EQ(claude.living(), 0);
    EXPECT_FALSE(preferences.settings().lastSearch);
}

TEST_F(RunFaultsTest, a_stop_while_asking_ends_the_hanging_agents) {
    scenario(QStringLiteral("\"hang\""), QStringLiteral("\"hang\""));
    QTimer::singleShot(400ms, [&] { stop.cancel(); });
    const RunReport report = run();
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.added, 0);
    EXPECT_EQ(claude.living(), 0);
}

// Three projects, six topics, five sites, half the pages dead and one feed without end: whatever
// fails besides, the run ends, says what happened, and keeps what was judged.
TEST_F(RunFaultsTest, a_large_run_survives_each_failure_in_turn) {
    preferences.change(&Settings::projects,
                       {{QStringLiteral("Potager"), QString()},
                        {QStringLiteral("Tiravue"), QString()},
                        {QStringLiteral("Zut"), QStringLiteral("/nulle/part")}});
    preferences.change(&Settings::interests,
                       {QStringLiteral("Rust"), QStringLiteral("Vélo"), QStringLiteral("Pain"),
                        QStringLiteral("Encre"), QStringLiteral("Toits"), QStringLiteral("Vent")});
    server.serve("/endless-site",
                 test::TestReply::page(
                     "<link rel=\"alternate\" type=\"application/rss+xml\" href=\"/endless\">"));
    server.serve("/endless",
                 test::TestReply::shaped(test::TestReply::Shape::Endless, "<rss><item><title>"));
    QList<PrioritySite> sites{{at("/endless-site"), {}, {}}};
    for (const char *site : {"/s1", "/s2", "/s3", "ftp://nope"}) {
        sites += PrioritySite{site[0] == '/' ? at(site) : QString::fromUtf8(site), {}, {}};
    }
    preferences.change(&Settings::prioritySites, sites);

    const struct {
        const char *project;
        const char *judge;
        bool unwritable;
        int failedScopes;
    } failures[] = {
        {"[]", "ok", false, 0},        {"\"fail\"", "ok", false, 1},  {"\"hang\"", "ok", false, 1},
        {"\"prose\"", "ok", false, 1}, {"[]", "fail-once", false, 0}, {"[]", "ok", true, 0},
    };
    int turn = 0;
    for (const auto &failure : failures) {
        QStringList found;
        for (int i = 0; i < 6; ++i) {
            const char *path = i % 2 == 0 ? "/long" : "/dead";
            found += candidate(at(path) + QStringLiteral("?t=%1-%2").arg(turn).arg(i), "Rust");
        }
        scenario(QString::fromUtf8(failure.project), list(found), failure.judge);
        const qsizetype before = store.count();
        if (failure.unwritable) { // a folder in the file's place: no save can succeed
            QFile::remove(store.file());
            QDir().mkdir(store.file());
        }
        const RunReport report = run();
        EXPECT_EQ(std::ranges::count_if(report.scopes,
                                        [](const ScopeReport &scope) {
                                            return scope.origin == Origin::Stack &&
                                                   !scope.error.isEmpty();
                                        }),
                  failure.failedScopes)
            << turn;
        EXPECT_EQ(report.added, 6) << turn;
        EXPECT_EQ(report.read.none, 3) << turn;
        EXPECT_EQ(store.count(), before + 6) << turn;
        EXPECT_EQ(report.saved, !failure.unwritable) << turn;
        EXPECT_FALSE(report.feeds.isEmpty());
        EXPECT_EQ(report.warnings.size(), 1) << "the folder that is gone is told";
        // Once is enough for the feed that never ends: it takes its whole time.
        preferences.change(&Settings::prioritySites, sites.sliced(1));
        ++turn;
    }
    EXPECT_EQ(claude.living(), 0);
}

// A stop may come at any moment: no process, no temporary file and no half topic is left.
// VORLE_STOPS sets how many are tried.
TEST_F(RunFaultsTest, a_stop_at_any_moment_leaves_nothing_behind) {
    const int stops =
        qEnvironmentVariableIsSet("VORLE_STOPS") ? qEnvironmentVariableIntValue("VORLE_STOPS") : 20;
    // A temporary directory of its own: what other test programs hold there at the moment is
    // theirs.
    QTemporaryDir own;
    test::Variables variables;
    variables.set("TMPDIR", own.path());
    const QDir temporary(QDir::tempPath());
    const auto leftFiles = [&] {
        return temporary.entryList({QStringLiteral("vorle-run-*"), QStringLiteral("vorle-schema-*"),
                                    QStringLiteral("vorle-answer-*")});
    };
    ASSERT_EQ(temporary.path(), own.path());
    dugPages = QStringLiteral(R"({"/gone":{"url":"%1","title":"c","what":"w"}})").arg(at("/other"));
    for (int i = 0; i < stops; ++i) {
        scenario(list({candidate(at("/long") + u'?' + QString::number(i), "Potager"),
                       candidate(at("/gone") + u'?' + QString::number(i), "Potager")}),
                 list({candidate(at("/short") + u'?' + QString::number(i), "Rust")}), "ok", 0.02);
        CancelSource source;
        // By value: a run may end before its stop comes.
        QTimer::singleShot(std::chrono::milliseconds(i * 400 / stops),
                           [source]() mutable { source.cancel(); });
        const RunReport report = test::waitFor(engine.run(source.token()), 60s);
        EXPECT_EQ(report.topicIds.size(), report.added);
        EXPECT_EQ(engine.phase(), SearchEngine::Phase::Idle);
    }
    EXPECT_EQ(claude.living(), 0);
    EXPECT_EQ(leftFiles(), QStringList());
    EXPECT_EQ(store.topics(TopicStatus::Pending).size(), 0);
    TopicStore again{store.file(), resources, clock};
    EXPECT_EQ(again.count(), store.count());
    for (const TopicPtr &topic : again.topics()) {
        EXPECT_FALSE(topic->sources.isEmpty());
        EXPECT_FALSE(topic->summary.isEmpty());
    }
}

// The items passed over: what is no list of them is kept aside, what cannot be read is left alone.
TEST(ScreenedItems, replaces_no_file_that_it_could_not_read) {
    const QTemporaryDir folder;
    const auto path = [&](const char *name) { return folder.filePath(QString::fromUtf8(name)); };
    const auto there = [&] {
        return QDir(folder.path()).entryList(QDir::Files, QDir::Name).join(u' ');
    };
    const ScreenedItems items(path("topics.json"));
    const QDateTime now(QDate(2026, 11, 22), QTime(8, 0), Qt::UTC);
    const QString link = QStringLiteral("a.fr/1");
    QFile file(path("screened.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\"links\": [");
    file.close();
    EXPECT_TRUE(items.passedOver({}).isEmpty());
    EXPECT_EQ(there(), u"screened.json") << "reading changes nothing";
    items.add({}, {link}, now);
    EXPECT_EQ(items.passedOver({}), QSet<QString>{link});
    EXPECT_TRUE(there().contains(u"screened.json.illisible-")) << there().toStdString();

    // With another territory, what a later version wrote stays.
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray kept = file.readAll().replace("\"links\"", "\"future\": 1.50,\n  \"links\"");
    file.close();
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(kept);
    file.close();
    SitesRequest other;
    other.tools = {QStringLiteral("Figma")};
    items.add(other, {QStringLiteral("a.fr/2")}, now);
    EXPECT_EQ(items.passedOver(other), QSet<QString>{QStringLiteral("a.fr/2")});
    EXPECT_TRUE(items.passedOver({}).isEmpty());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("\"future\": 1.50"));
    file.close();

    ASSERT_TRUE(QFile::resize(file.fileName(), maxFileBytes + 1)); // more than is read
    const QString before = there();
    items.add(other, {link}, now);
    EXPECT_EQ(file.size(), maxFileBytes + 1);
    EXPECT_EQ(there(), before);
}

} // namespace
} // namespace vorle
