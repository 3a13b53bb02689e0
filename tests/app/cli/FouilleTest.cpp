// `vorle fouille`, run as a person runs it: what becomes of the topics, whatever ends the run.

#include "core/RunReport.h"
#include "core/ScoreProvenanceLog.h"
#include "storage/StoreLock.h"
#include "tests/support/Program.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QJsonArray>

#include <gmock/gmock.h>

#include <csignal>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;

class FouilleTest : public testing::Test {
protected:
    FouilleTest() {
        vorle.environment.insert(QStringLiteral("VORLE_ALLOW_LOOPBACK"), QStringLiteral("1"));
    }

    /// A topic to follow whose every candidate is a page of the test server.
    void territory(int candidates, const char *judge, double seconds) {
        QStringList links;
        for (int i = 0; i < candidates; ++i) {
            const QByteArray path = "/p" + QByteArray::number(i);
            server.serve(path,
                         test::TestReply::page("<title>T</title><article>" +
                                               QByteArray("mot ").repeated(300) + "</article>"));
            links += QStringLiteral(R"({"title":"t%1","url":"%2","kind":"article","about":"Rust"})")
                         .arg(i)
                         .arg(server.link(path));
        }
        vorle.agent.answerBy(
            QStringLiteral(R"({"candidates":{"Topics":[%1]},"judge":"%2","seconds":%3})")
                .arg(links.join(u','), QString::fromUtf8(judge))
                .arg(seconds)
                .toUtf8());
        ASSERT_EQ(vorle.run("reglages interests [\"Rust\"]").status, 0);
    }

    Program vorle;
    test::TestServer server;
};

TEST_F(FouilleTest, a_captured_link_that_nobody_read_is_read_when_it_is_to_be_sorted_again) {
    territory(1, "ok", 0);
    Topic waiting;
    waiting.id = QUuid(QStringLiteral("CD330000-0000-4000-8000-000000000003"));
    waiting.title = QStringLiteral("un site");
    waiting.status = TopicStatus::Pending;
    waiting.readLevel = ReadLevel::None;
    waiting.foundAt = QDateTime(QDate(2026, 11, 2), QTime(8, 0), Qt::UTC);
    waiting.capturedURL = server.link("/p0");
    waiting.sources = {{QString(), *waiting.capturedURL}};
    for (const TopicStatus status : {TopicStatus::Pending, TopicStatus::Dismissed}) {
        waiting.status = status;
        vorle.save({waiting});
        const Program::Outcome read = vorle.run("trier CD33 retrier");
        EXPECT_EQ(read.status, 0) << read.err;
        EXPECT_THAT(read.out, HasSubstr("Lu et noté · À trier"));
        ASSERT_EQ(vorle.topics().size(), 1);
        EXPECT_EQ(vorle.topics().first().status, TopicStatus::Inbox);
        EXPECT_EQ(vorle.topics().first().score, 7);
    }
    // One that cannot be judged waits on, and says why.
    territory(1, "fail", 0);
    waiting.status = TopicStatus::Pending;
    vorle.save({waiting});
    const Program::Outcome failed = vorle.run("trier CD33 retrier");
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.err, HasSubstr("le serveur est occupé"));
    EXPECT_EQ(vorle.topics().first().status, TopicStatus::Pending);
}

TEST_F(FouilleTest, the_demonstration_goes_the_whole_road) {
    const Program::Outcome run = vorle.run("fouille --demo --json");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.err, HasSubstr("Tes sujets\n"));
    EXPECT_THAT(run.err, HasSubstr("Lecture et tri : "));
    EXPECT_THAT(run.err, HasSubstr("failed, trying again: "));

    const QJsonObject report = run.object();
    for (const char *key : {"date", "added", "costUSD", "seconds", "uncovered", "topics"}) {
        EXPECT_TRUE(report.contains(QLatin1StringView(key))) << key;
    }
    int added = 0;
    int unread = 0;
    QSet<int> scores;
    int before = 0;
    for (const Topic &topic : vorle.topics("demo-topics.json")) {
        if (!topic.mainSource()->url.startsWith(u"http://127.0.0.1:")) {
            ++before;
        } else {
            ++added;
            EXPECT_EQ(topic.status, TopicStatus::Inbox);
            EXPECT_FALSE(topic.why.isEmpty());
            unread += topic.readLevel == ReadLevel::None ? 1 : 0;
            scores.insert(topic.score);
        }
    }
    EXPECT_GE(added, 10);
    EXPECT_EQ(report[u"added"].toInt(), added);
    EXPECT_EQ(report[u"topics"].toArray().size(), added);
    EXPECT_EQ(unread, 0);
    EXPECT_EQ(report[u"dug"].toInt(), 1) << "one page is dead, and found elsewhere";
    EXPECT_GE(scores.size(), 4);
    const auto records =
        json::decode<QList<ScoreProvenance>>(vorle.read("data/vorle/demo-topics-score-notes.json"));
    constexpr int unnoted = 12; // of the sample, which are to be sorted
    EXPECT_EQ(records.size(), before - unnoted + added)
        << "what stood behind each score is kept, dug-up pages too";
    for (const ScoreProvenance &each : records) {
        EXPECT_EQ(each.agent, QStringLiteral("claude"));
        EXPECT_GT(each.bytesRead, 0);
    }
    const auto runs =
        json::decode<QList<RunReport>>(vorle.read("data/vorle/demo-topics-runs.json"));
    ASSERT_GT(runs.size(), 1) << "the demonstration has a past, and this run joins it";
    const RunReport &latest = runs.last();
    EXPECT_LT(runs[runs.size() - 2].date, latest.date);
    EXPECT_EQ(latest.added, added);
    ASSERT_EQ(latest.sites.value_or(QList<SiteReport>()).size(), 1);
    EXPECT_GT(latest.sites->first().found, 0);
    EXPECT_TRUE(vorle.topics().isEmpty()) << "the real topics are left alone";
    EXPECT_FALSE(QFile::exists(vorle.settingsFile())) << "so are the real settings";
}

TEST_F(FouilleTest, the_demonstration_is_not_made_anew_under_whoever_shows_it) {
    const char *file = "data/vorle/demo-topics.json";
    const QByteArray shown = "what is shown";
    ASSERT_TRUE(QDir().mkpath(vorle.path("data/vorle")));
    vorle.write(file, shown);
    StoreLock elsewhere(vorle.path(file));
    ASSERT_TRUE(elsewhere.tryLock());
    QProcess &bilan = vorle.start("bilan --periode mois --demo --json");
    QByteArray told;
    test::spinUntil([&] {
        told += bilan.readAllStandardError();
        return told.contains("j’attends qu’elle finisse");
    });
    EXPECT_EQ(vorle.read(file), shown);
    elsewhere.release();
    const Program::Outcome outcome = Program::end(bilan);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_GT(outcome.object()[u"done"].toInt(), 0);
    EXPECT_GT(vorle.topics("demo-topics.json").size(), 12);
}

TEST_F(FouilleTest, a_run_may_not_reach_this_machine_unless_told) {
    territory(3, "ok", 0);
    vorle.environment.insert(QStringLiteral("VORLE_ALLOW_LOOPBACK"), QStringLiteral("0"));
    EXPECT_EQ(vorle.run("fouille").status, 0);
    EXPECT_TRUE(server.requests().isEmpty());
    for (const Topic &topic : vorle.topics()) {
        EXPECT_EQ(topic.readLevel, ReadLevel::None);
    }
}

TEST_F(FouilleTest, an_interrupt_keeps_what_was_judged) {
    territory(24, "ok", 0.5);
    QProcess &run = vorle.start("fouille");
    test::spinUntil([&] { return vorle.topics().size() >= 8; });
    kill(pid_t(run.processId()), SIGINT);
    const Program::Outcome outcome = Program::end(run);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("Fouille arrêtée\u00A0: "));
    const QList<Topic> kept = vorle.topics();
    EXPECT_GE(kept.size(), 8);
    EXPECT_LT(kept.size(), 24);
    for (const Topic &topic : kept) {
        EXPECT_EQ(topic.status, TopicStatus::Inbox);
    }
}

TEST_F(FouilleTest, a_killed_run_loses_nothing_judged_and_pays_nothing_twice) {
    territory(24, "ok", 0.5);
    QProcess &run = vorle.start("fouille");
    test::spinUntil([&] { return vorle.topics().size() >= 8; });
    run.kill();
    Program::end(run);
    const qsizetype judged = vorle.topics().size();
    ASSERT_LT(judged, 24);
    EXPECT_EQ(vorle.topics().first().status, TopicStatus::Pending);

    const Program::Outcome next = vorle.run("fouille");
    EXPECT_EQ(next.status, 0) << next.err;
    EXPECT_THAT(next.err, HasSubstr("d’une fouille interrompue"));
    const QList<Topic> kept = vorle.topics();
    EXPECT_EQ(kept.size(), 24) << "what was judged is not judged again, the rest is";
    for (const Topic &topic : kept) {
        EXPECT_EQ(topic.status, TopicStatus::Inbox);
    }
}

TEST_F(FouilleTest, two_runs_at_once_lose_nothing) {
    territory(16, "ok", 0.2);
    QProcess &first = vorle.start("fouille");
    test::spinUntil([&] { return vorle.agent.calls(u"judge") > 0; });
    QProcess &second = vorle.start("fouille");
    const Program::Outcome later = Program::end(second);
    EXPECT_EQ(Program::end(first).status, 0);
    EXPECT_EQ(later.status, 0);
    EXPECT_THAT(later.err, HasSubstr("j’attends qu’elle finisse"));
    EXPECT_EQ(vorle.topics().size(), 16);
    EXPECT_EQ(vorle.agent.calls(u"judge"), 2) << "the second run knew every link";
    EXPECT_THAT(later.err, HasSubstr("vorle calibrer --passer"));
}

TEST_F(FouilleTest, an_unreadable_topics_file_is_kept_aside_and_told) {
    vorle.write("data/vorle/topics.json", "{\"pas\":\"une liste\"}");
    EXPECT_EQ(vorle.run("sujets").status, 1);
    territory(2, "ok", 0);
    const Program::Outcome run = vorle.run("fouille");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, HasSubstr("topics.json.illisible-"));
    EXPECT_EQ(vorle.topics().size(), 2);
    const QStringList aside =
        QDir(vorle.path("data/vorle")).entryList({QStringLiteral("topics.json.illisible-*")});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(test::readFile(vorle.path("data/vorle/") + aside.first()), "{\"pas\":\"une liste\"}");
}

TEST_F(FouilleTest, an_agent_that_is_missing_or_signed_out_is_named) {
    territory(1, "ok", 0);
    vorle.agent.signOut();
    EXPECT_THAT(vorle.run("fouille").err, HasSubstr("Claude Code n’est plus connecté."));
    vorle.environment.insert(QStringLiteral("VORLE_AGENT"), QStringLiteral("codex"));
    const Program::Outcome run = vorle.run("fouille");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("Codex est introuvable sur ce Mac."));
    const QJsonObject shown = vorle.run("agents --json").object();
    EXPECT_EQ(shown[u"chosen"].toString(), u"codex");
    EXPECT_EQ(shown[u"agents"].toArray()[0].toObject()[u"state"].toString(), u"signed out");
    EXPECT_EQ(shown[u"agents"].toArray()[1].toObject()[u"state"].toString(), u"missing");
}

} // namespace
} // namespace vorle
