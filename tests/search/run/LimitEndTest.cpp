// How the parts of a run end: stopped, failed, killed between any two writes, with the same link
// coming from elsewhere meanwhile. What was done is told once, what was not is left.

#include "tests/search/run/LimitFixture.h"

#include <QDir>
#include <QTimer>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using test::candidate;
using test::LimitTest;
using test::list;

class LimitEndTest : public LimitTest {
protected:
    /// Opens the topics of `place` as another process would, and goes on with what is left there.
    void goOnAt(const QString &place) {
        Preferences settings(
            std::make_unique<SettingsFile>(place + QStringLiteral("/settings.json")));
        TopicStore other{place + QStringLiteral("/topics.json"), resources, clock};
        ScoreProvenanceLog log(other, clock);
        RediscoveryLog finds(other, clock);
        SearchEngine next({.preferences = settings,
                           .store = other,
                           .provenance = log,
                           .rediscoveries = finds,
                           .asker = asker,
                           .reader = reader,
                           .feeds = feeds,
                           .images = images,
                           .clock = clock});
        other.releaseAllPending();
        if (next.remainder()) {
            test::waitFor(next.resume({}), 60s);
        }
        EXPECT_FALSE(next.remainder());
        EXPECT_FALSE(QFile::exists(place + QStringLiteral("/run-left.json")));
        EXPECT_EQ(other.topics(TopicStatus::Inbox).size(), 10);
        int told = 0;
        for (const RunReport &report : other.history()) {
            EXPECT_FALSE(report.waits);
            EXPECT_EQ(report.added, report.topicIds.size());
            told += report.added;
        }
        EXPECT_EQ(told, 10);
    }
    /// A link as the user captures it.
    QUuid capture(const QString &link) {
        Topic topic;
        topic.id = QUuid::createUuid();
        topic.title = link;
        topic.sources = {{QString(), link}};
        topic.status = TopicStatus::Pending;
        topic.readLevel = ReadLevel::None;
        topic.foundAt = clock.now();
        topic.capturedURL = link;
        topic.origin = Origin::Capture;
        return store.add({topic}).value(0);
    }
};

TEST_F(LimitEndTest, a_rest_that_is_stopped_or_fails_is_still_left_and_no_longer_goes_by_itself) {
    const QString topics = list(pages(10));
    const auto limited = [&] {
        limit(QStringLiteral(R"("step":"judge",)"));
        scenario(QStringLiteral("[]"), topics);
    };
    limited();
    run();
    ASSERT_EQ(engine.remainder()->links.size(), 10);
    const QDateTime noon = engine.remainder()->waits().until.value();
    EXPECT_EQ(resumeAction(*engine.remainder(), noon, false), ResumeAction::Go);

    limit({});
    scenario(QStringLiteral("[]"), topics, "hang");
    QTimer::singleShot(600ms, [&] { stop.cancel(); });
    EXPECT_TRUE(resume().cancelled);
    stop = CancelSource();
    ASSERT_TRUE(engine.remainder());
    EXPECT_EQ(resumeAction(*engine.remainder(), noon, false), ResumeAction::Offer);
    EXPECT_EQ(engine.remainder()->links.size(), 10);
    EXPECT_FALSE(store.history().first().cancelled);
    EXPECT_TRUE(store.history().first().waits);

    scenario(QStringLiteral("[]"), topics, "fail");
    EXPECT_THROW(resume(), AgentError);
    claude.signOut();
    EXPECT_THROW(resume(), AgentError);
    claude.signIn();
    EXPECT_EQ(store.history().size(), 1) << "it is one run";
    EXPECT_FALSE(store.history().first().failed);
    EXPECT_EQ(engine.remainder()->links.size(), 10);

    scenario(QStringLiteral("[]"), topics);
    EXPECT_EQ(resume().added, 10);
    EXPECT_FALSE(engine.remainder());
    const RunReport whole = store.history().first();
    EXPECT_TRUE(whole.unjudged.isEmpty()) << "they were judged after all";
    EXPECT_EQ(whole.judged, 10);
    EXPECT_EQ(whole.read.full, 10) << "each page counts once";
}

// The run that took the links in is stopped when it has judged them all, with a search under way.
TEST_F(LimitEndTest, a_rest_that_a_stopped_run_brought_wholly_is_not_offered_any_more) {
    const QString topics = list(pages(8));
    limit(QStringLiteral(R"("step":"judge",)"));
    scenario(QStringLiteral("[]"), topics);
    run();
    ASSERT_EQ(engine.remainder()->links.size(), 8);

    limit({});
    otherTraits = QStringLiteral(R"("delays":{"**Potager**":60},)");
    scenario(QStringLiteral("[]"), topics);
    const auto stopping = QObject::connect(&store, &TopicStore::topicsAdded, [&] {
        if (store.count() == 8) {
            stop.cancel();
        }
    });
    const RunReport cut = run();
    QObject::disconnect(stopping);
    EXPECT_TRUE(cut.cancelled);
    EXPECT_EQ(cut.added, 8);
    EXPECT_FALSE(engine.remainder());
    EXPECT_FALSE(QFile::exists(restFile()));
    for (const RunReport &report : store.history()) {
        EXPECT_FALSE(report.waits);
    }
}

// A search is under way when the user stops it, others were not made, links are judged in part.
TEST_F(LimitEndTest, a_part_that_is_stopped_keeps_what_it_did_and_leaves_the_rest) {
    const QString project = list({candidate(at("/short"), "Potager")});
    const QString topics = list(pages(24));
    limit(QStringLiteral(R"("in":"**Potager**",)"));
    otherTraits += QStringLiteral(R"("delays":{"Topics the person":0.4},)");
    scenario(project, topics);
    run();
    ASSERT_EQ(engine.remainder()->links.size(), 24);

    limit({});
    otherTraits = QStringLiteral(R"("delays":{"**Potager**":60},)");
    scenario(project, topics);
    const auto stopping =
        QObject::connect(&store, &TopicStore::topicsAdded, [&] { stop.cancel(); });
    const RunReport part = resume();
    QObject::disconnect(stopping);
    stop = CancelSource();
    EXPECT_TRUE(part.cancelled);
    ASSERT_GE(part.added, 8);
    ASSERT_TRUE(engine.remainder());
    EXPECT_EQ(engine.remainder()->links.size(), 24 - part.added);
    EXPECT_EQ(engine.remainder()->waits().links, 24 - part.added);
    const RunReport half = store.history().first();
    EXPECT_TRUE(half.waits);
    EXPECT_EQ(half.judged, part.added);
    EXPECT_EQ(half.read.full, part.added) << "the others are read again";

    limit({});
    scenario(project, topics);
    EXPECT_EQ(resume().added, 25 - part.added);
    EXPECT_FALSE(engine.remainder());
    const RunReport whole = store.history().first();
    EXPECT_EQ(whole.added, 25);
    EXPECT_EQ(whole.judged, 25);
    EXPECT_EQ(whole.read.full + whole.read.seen + whole.read.meta, 25);
    EXPECT_EQ(whole.uncovered, QStringList{QStringLiteral("Vélo")});
    for (const ScopeReport &scope : whole.scopes) {
        EXPECT_EQ(scope.found, scope.yield->added) << scope.name.toStdString();
    }
}

// What a killed part leaves: judged topics, and all else as it was.
TEST_F(LimitEndTest, what_a_killed_part_judged_is_not_judged_again_and_is_told) {
    const QString topics = list(pages(10));
    limit(QStringLiteral(R"("step":"judge",)"));
    scenario(QStringLiteral("[]"), topics);
    run();
    limit({});
    scenario(QStringLiteral("[]"), topics);
    const QByteArray rest = test::readFile(restFile());
    const QByteArray runs = test::readFile(folder.filePath(QStringLiteral("runs.json")));
    resume();
    write(QStringLiteral("run-left.json"), rest);
    write(QStringLiteral("runs.json"), runs);
    ASSERT_TRUE(store.flush() && preferences.flush());
    const qsizetype judgments = claude.calls(u"judge");
    goOnAt(folder.path());
    EXPECT_EQ(claude.calls(u"judge"), judgments);
}

// Each time something was written, what lies on the disk is what a kill would leave: of a run that
// meets its limit, of one that takes its rest in and meets it again, and of the end of that rest.
TEST_F(LimitEndTest, killed_between_any_two_writes_it_is_told_once) {
    const QString topics = list(pages(10));
    QTemporaryDir states;
    QStringList places;
    const auto keep = [&] {
        const QString place = states.filePath(QString::number(places.size()));
        QDir().mkdir(place);
        const QDir now(folder.path());
        for (const QString &name : now.entryList({QStringLiteral("*.json")}, QDir::Files)) {
            QFile::copy(now.filePath(name), place + u'/' + name);
        }
        places += place;
    };
    QObject guard;
    QObject::connect(&engine, &SearchEngine::remainderChanged, &guard, keep);
    QObject::connect(&store, &TopicStore::historyChanged, &guard, keep);
    QObject::connect(&store, &TopicStore::saved, &guard, [&] {
        if (engine.remainder()) {
            keep();
        }
    });
    ASSERT_TRUE(preferences.flush());
    limit(QStringLiteral(R"("step":"judge",)"));
    scenario(QStringLiteral("[]"), topics);
    const QDateTime first = run().date;
    // Two runs of one second are told by the same date.
    test::spinUntil([&] { return clock.now() > first.addSecs(1); });
    run();
    limit({});
    scenario(QStringLiteral("[]"), topics);
    resume();
    keep();
    ASSERT_GE(places.size(), 7);
    for (const QString &place : std::as_const(places)) {
        SCOPED_TRACE(place.toStdString());
        goOnAt(place);
    }
}

// The user captures a page that the run is about to judge, or that waits under another address.
TEST_F(LimitEndTest, a_link_captured_meanwhile_is_one_topic) {
    const QString topics = list({candidate(at("/long"), "Rust"), candidate(at("/other"), "Rust")});
    scenario(QStringLiteral("[]"), topics, "ok", 0.3);
    QUuid captured;
    QObject guard;
    QObject::connect(&engine, &SearchEngine::progressed, &guard, [&](const RunProgress &progress) {
        if (progress.read == 2 && captured.isNull()) {
            captured = capture(at("/long"));
        }
    });
    EXPECT_EQ(run().added, 1);
    EXPECT_EQ(store.count(), 2);
    EXPECT_EQ(store.topic(captured)->capturedURL, at("/long"));

    // Two addresses of one page wait; the second is captured.
    server.serve("/moved", test::TestReply::redirect("/target"));
    server.serve("/target", test::TestReply::page(page("target")));
    limit(QStringLiteral(R"("step":"judge",)"));
    scenario(list({candidate(at("/target"), "Potager")}), list({candidate(at("/moved"), "Rust")}));
    run();
    ASSERT_TRUE(engine.remainder());
    ASSERT_EQ(engine.remainder()->links.size(), 1);
    const RemainingLink &left = engine.remainder()->links.first();
    ASSERT_EQ(left.others.size(), 1);
    const QString second = left.others.first().url;
    captured = capture(second);
    limit({});
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    EXPECT_EQ(resume().added, 0);
    EXPECT_EQ(store.count(), 3);
    EXPECT_EQ(store.topic(captured)->sources.size(), 2) << "it has the other address now";
}

} // namespace
} // namespace vorle
