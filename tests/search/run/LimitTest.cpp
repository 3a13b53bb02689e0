// Runs whose agent reaches its limit: what they found and judged is kept, what is left goes on, and
// there is one report for all of it.

#include "tests/search/run/LimitFixture.h"

#include <QDir>

#include <gmock/gmock.h>

#include <numeric>

namespace vorle {
namespace {

using test::candidate;
using test::LimitTest;
using test::list;
using testing::UnorderedElementsAre;

// The project's question meets the limit while the topics' one is under way: that one's links are
// read, and left to judge.
TEST_F(LimitTest, what_was_not_asked_and_not_judged_waits_and_comes_under_the_same_report) {
    const QString project = list({candidate(at("/short"), "Potager")});
    const QString topics = list({candidate(at("/long"), "Rust"), candidate(at("/other"), "Vélo")});
    limit(QStringLiteral(R"("in":"**Potager**",)"));
    otherTraits += QStringLiteral(R"("delays":{"Topics the person":0.4},)");
    scenario(project, topics);
    const RunReport first = run();
    ASSERT_TRUE(first.waits);
    EXPECT_EQ(first.waits->agent, u"Claude Code");
    EXPECT_EQ(first.waits->words, u"You've hit your limit · resets 1pm");
    EXPECT_TRUE(first.waits->until);
    EXPECT_EQ(first.waits->scopes, 1);
    EXPECT_EQ(first.waits->links, 2);
    EXPECT_FALSE(first.failed);
    EXPECT_TRUE(first.unjudged.isEmpty()) << "they are no failures";
    EXPECT_TRUE(first.uncovered.isEmpty());
    EXPECT_EQ(first.read.full, 0) << "they are read again";
    EXPECT_EQ(claude.calls(u"judge"), 0) << "no call is made in vain";
    EXPECT_EQ(claude.calls(u"candidates"), 2) << "nor a second one";
    EXPECT_EQ(preferences.settings().lastSearch, first.date) << "a limited run is done";
    EXPECT_TRUE(preferences.settings().servedSlot);
    ASSERT_TRUE(engine.remainder());
    EXPECT_EQ(engine.remainder()->scopes.size(), 1);
    EXPECT_EQ(engine.remainder()->scopes.first().name, u"Potager");
    EXPECT_FALSE(test::readFile(restFile()).contains("mot mot")) << "no page is kept";

    const auto slot = preferences.settings().servedSlot;
    limit({});
    scenario(project, topics);
    const RunReport rest = resume();
    EXPECT_EQ(rest.added, 3);
    EXPECT_EQ(claude.calls(u"candidates"), 3) << "the project's question alone";
    EXPECT_THAT(inboxLinks(), UnorderedElementsAre(at("/long"), at("/other"), at("/short")));
    EXPECT_FALSE(engine.remainder());
    EXPECT_FALSE(QFile::exists(restFile()));
    EXPECT_THROW(resume(), RunRefused);

    for (const TopicPtr &topic : inbox()) {
        EXPECT_EQ(topic->foundAt, first.date) << "of the run that is told of";
    }

    const QList<RunReport> kept = store.history();
    ASSERT_EQ(kept.size(), 1) << "one report for the whole";
    const RunReport &whole = kept.first();
    EXPECT_EQ(whole.date, first.date);
    EXPECT_FALSE(whole.waits);
    EXPECT_EQ(whole.added, 3);
    EXPECT_EQ(whole.judged, 3);
    EXPECT_EQ(whole.read.full + whole.read.seen + whole.read.meta, 3);
    EXPECT_GE(whole.seconds, first.seconds);
    ASSERT_EQ(whole.scopes.size(), 2);
    for (const ScopeReport &scope : whole.scopes) {
        EXPECT_FALSE(scope.waits.value_or(false));
        EXPECT_EQ(scope.found, scope.origin == Origin::Stack ? 1 : 2);
        EXPECT_EQ(scope.yield->added, scope.found);
    }
    EXPECT_EQ(whole.steps->first().calls, 3);
    EXPECT_EQ(whole.steps->first().failed, 1);
    EXPECT_DOUBLE_EQ(whole.costUSD, 0.75);
    EXPECT_EQ(preferences.settings().lastSearch, first.date) << "when the first part ended";
    EXPECT_EQ(preferences.settings().lastReport, lastOf(whole));
    EXPECT_EQ(preferences.settings().servedSlot, slot);
}

TEST_F(LimitTest, a_judge_at_its_limit_leaves_what_it_did_not_judge_again_and_again) {
    const QString topics = list(pages(24));
    limit(QStringLiteral(R"("step":"judge","after":1,)"));
    scenario(QStringLiteral("[]"), topics);
    const RunReport first = run();
    EXPECT_EQ(first.added, 8);
    EXPECT_EQ(inbox().size(), 8) << "what was judged is the user's";
    ASSERT_TRUE(engine.remainder());
    EXPECT_EQ(engine.remainder()->links.size(), 16);
    EXPECT_EQ(engine.remainder()->fruitless, 0);
    EXPECT_TRUE(preferences.settings().lastSearch);

    // Three parts that come to nothing, and it goes on only when it is told to.
    scenario(QStringLiteral("[]"), topics);
    for (int part = 1; part <= 3; ++part) {
        const RunReport again = resume();
        EXPECT_EQ(again.added, 0);
        EXPECT_EQ(engine.remainder()->links.size(), 16);
        EXPECT_EQ(engine.remainder()->fruitless, part);
        EXPECT_EQ(engine.remainder()->asked, part == 3);
    }
    limit({});
    scenario(QStringLiteral("[]"), topics);
    EXPECT_EQ(resume().added, 16);
    EXPECT_EQ(inbox().size(), 24);
    ASSERT_EQ(store.history().size(), 1);
    const RunReport whole = store.history().first();
    EXPECT_EQ(whole.added, 24);
    EXPECT_EQ(whole.read.full, 24);
    EXPECT_EQ(
        std::accumulate(whole.scopes.begin(), whole.scopes.end(), 0,
                        [](int sum, const ScopeReport &scope) { return sum + scope.yield->added; }),
        24);
    EXPECT_EQ(QSet<QUuid>(whole.topicIds.begin(), whole.topicIds.end()).size(), 24);
    EXPECT_EQ(claude.calls(u"candidates"), 3) << "two scopes, and a second search for one topic";
}

// The cards that could not be read are handed over as they are; those that the user left alone are
// completed later.
TEST_F(LimitTest, pages_that_were_not_dug_for_complete_their_cards_later) {
    dugPages = QStringLiteral(R"({"/gone1":{"url":"%1","title":"c","what":"w"},)"
                              R"("/gone2":{"url":"%2","title":"c","what":"w"}})")
                   .arg(at("/long"), at("/other"));
    const QString project =
        list({candidate(at("/gone1"), "Potager"), candidate(at("/gone2"), "Potager")});
    limit(QStringLiteral(R"("step":"dig",)"));
    scenario(project, QStringLiteral("[]"));
    const RunReport first = run();
    EXPECT_EQ(first.added, 2);
    EXPECT_EQ(first.read.none, 2);
    ASSERT_TRUE(engine.remainder());
    ASSERT_EQ(engine.remainder()->links.size(), 2);
    QUuid decided;
    for (const TopicPtr &topic : inbox()) {
        decided = topic->mainSource()->url == at("/gone2") ? topic->id : decided;
    }
    store.keep(decided);

    limit({});
    scenario(project, QStringLiteral("[]"));
    resume();
    ASSERT_EQ(inbox().size(), 1);
    EXPECT_EQ(inbox().first()->readLevel, ReadLevel::Full);
    EXPECT_EQ(inbox().first()->score, 7);
    EXPECT_THAT(inboxLinks(), UnorderedElementsAre(at("/long")));
    EXPECT_EQ(store.topic(decided)->readLevel, ReadLevel::None) << "the user has it as it was";
    EXPECT_EQ(store.history().first().dug, 1);
    EXPECT_EQ(store.history().first().added, 2);
    EXPECT_EQ(store.count(), 2);
}

TEST_F(LimitTest, a_second_search_and_the_sites_wait_too) {
    server.serve("/site",
                 test::TestReply::page(
                     "<link rel=\"alternate\" type=\"application/rss+xml\" href=\"/feed\">"));
    server.serve("/feed", test::TestReply::shaped(test::TestReply::Shape::Whole,
                                                  "<rss><channel><item><title>Neuf</title><link>" +
                                                      at("/other").toUtf8() +
                                                      "</link></item></channel></rss>"));
    preferences.change(&Settings::prioritySites, {PrioritySite{at("/site"), {}, {}}});
    const QString topics = list({candidate(at("/long"), "Rust")});
    sitesAnswer = list({candidate(at("/other"), "Potager")});
    limit(QStringLiteral(R"("in":"came back empty on",)"));
    otherTraits += QStringLiteral(R"("delays":{"trusts, for their":0.5},)");
    scenario(QStringLiteral("[]"), topics);
    const RunReport first = run();
    ASSERT_TRUE(engine.remainder());
    ASSERT_EQ(engine.remainder()->scopes.size(), 1);
    EXPECT_EQ(engine.remainder()->scopes.first().origin, Origin::Suggestion);
    EXPECT_EQ(engine.remainder()->scopes.first().topics, QStringList{QStringLiteral("Vélo")});
    EXPECT_TRUE(first.uncovered.isEmpty()) << "nobody knows yet";
    EXPECT_FALSE(engine.remainder()->sites) << "their call was under way";

    limit({});
    scenario(QStringLiteral("[]"), topics);
    resume();
    EXPECT_EQ(store.history().first().uncovered, QStringList{QStringLiteral("Vélo")});
    EXPECT_THAT(inboxLinks(), UnorderedElementsAre(at("/long"), at("/other")));

    limit(QStringLiteral(R"("in":"trusts, for their",)"));
    sitesAnswer = list({candidate(at("/short"), "Potager")});
    server.serve("/feed", test::TestReply::shaped(test::TestReply::Shape::Whole,
                                                  "<rss><channel><item><title>Autre</title><link>" +
                                                      at("/short").toUtf8() +
                                                      "</link></item></channel></rss>"));
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    EXPECT_EQ(run().sites->first().items, 0) << "nobody has looked at them";
    ASSERT_TRUE(engine.remainder());
    EXPECT_TRUE(engine.remainder()->sites);
    limit({});
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    resume();
    EXPECT_EQ(inbox().size(), 3);
    EXPECT_EQ(store.history().last().sites->first().items, 1);

    // The last site went meanwhile: nothing waits for it, and it is told.
    limit(QStringLiteral(R"("in":"trusts, for their",)"));
    server.serve("/feed", test::TestReply::shaped(test::TestReply::Shape::Whole,
                                                  "<rss><channel><item><title>Tard</title><link>" +
                                                      at("/late").toUtf8() +
                                                      "</link></item></channel></rss>"));
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    run();
    ASSERT_TRUE(engine.remainder());
    preferences.change(&Settings::prioritySites, {});
    limit({});
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    resume();
    EXPECT_FALSE(engine.remainder());
    const RunReport last = store.history().last();
    EXPECT_EQ(last.warnings.size(), 1);
    for (const ScopeReport &scope : last.scopes) {
        EXPECT_FALSE(scope.waits.value_or(false)) << scope.name.toStdString();
    }
}

TEST_F(LimitTest, a_rest_given_up_or_damaged_has_its_period_searched_again) {
    const QString topics = list(pages(3));
    for (const bool damaged : {false, true}) {
        limit(QStringLiteral(R"("step":"judge",)"));
        scenario(QStringLiteral("[]"), topics);
        run();
        ASSERT_TRUE(engine.remainder());
        const QDateTime period = engine.remainder()->waits().period;
        EXPECT_LT(period, *preferences.settings().searchedUntil);
        if (damaged) {
            write(QStringLiteral("run-left.json"), "{\"links\": [");
            EXPECT_THROW(resume(), RunRefused);
        } else {
            EXPECT_TRUE(engine.giveUpRest());
            EXPECT_FALSE(engine.giveUpRest());
        }
        EXPECT_FALSE(engine.remainder());
        EXPECT_EQ(preferences.settings().searchedUntil, period);
        EXPECT_FALSE(QFile::exists(restFile()));
        EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("run-left.json.ill*")}).size(),
                  damaged ? 1 : 0);
        EXPECT_FALSE(store.history().last().waits);
        EXPECT_EQ(store.history().last().warnings.size(), 1);
    }
}

// Whatever the next run is asked by, it takes the links in and the place of what was left.
TEST_F(LimitTest, a_new_run_takes_the_rest_in_and_may_leave_one_of_its_own) {
    limit(QStringLiteral(R"("step":"judge",)"));
    scenario(list({candidate(at("/short"), "Potager")}), list(pages(2)));
    run();
    ASSERT_EQ(engine.remainder()->links.size(), 3);
    const QDateTime period = engine.remainder()->waits().period;

    // Nothing is found anew, a project is gone, and the limit still stands.
    preferences.change(&Settings::projects, {});
    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}));
    const RunReport second = run();
    ASSERT_EQ(engine.remainder()->links.size(), 3) << "one more, and one that is for nobody";
    EXPECT_EQ(second.warnings.size(), 1) << "which is told";
    EXPECT_LE(engine.remainder()->waits().period, period);
    ASSERT_EQ(store.history().size(), 2);
    EXPECT_FALSE(store.history().first().waits);
    EXPECT_FALSE(store.history().first().warnings.isEmpty());

    limit({});
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    const RunReport third = run();
    EXPECT_EQ(third.added, 3);
    EXPECT_FALSE(engine.remainder());
    EXPECT_FALSE(QFile::exists(restFile()));
    EXPECT_TRUE(std::ranges::none_of(
        store.history(), [](const RunReport &report) { return report.waits.has_value(); }));
}

TEST_F(LimitTest, a_rest_that_cannot_be_kept_has_the_period_searched_again) {
    QDir(folder.path()).mkdir(QStringLiteral("run-left.json")); // cannot be replaced
    limit(QStringLiteral(R"("step":"judge",)"));
    scenario(QStringLiteral("[]"), list(pages(2)));
    const RunReport report = run();
    EXPECT_FALSE(engine.remainder());
    EXPECT_FALSE(report.waits);
    EXPECT_EQ(report.warnings.size(), 2);
    EXPECT_TRUE(preferences.settings().lastSearch);
    EXPECT_LT(*preferences.settings().searchedUntil,
              preferences.settings().lastSearch->addDays(-1));
}

} // namespace
} // namespace vorle
