// Pages that the judge refuses, and a judge that is down: what a run does with the links it leaves.

#include "search/run/RunPlan.h"
#include "tests/search/run/RunFixture.h"

namespace vorle {
namespace {

using namespace std::chrono_literals;

using test::candidate;
using test::list;

class RefusedLinksTest : public test::RunFixture {};

TEST_F(RefusedLinksTest, one_bad_page_does_not_cost_the_others_their_judgment) {
    QStringList links;
    for (int i = 0; i < 4; ++i) {
        const QByteArray path = "/p" + QByteArray::number(i);
        server.serve(path, test::TestReply::page(page("p")));
        links += candidate(server.link(path), "Rust");
    }
    otherTraits = QStringLiteral("\"overlooked\":\"/p1\",");
    scenario(QStringLiteral("[]"), list(links.first(2)));
    EXPECT_EQ(run().added, 2) << "what got no answer is judged once more, alone";

    otherTraits = QStringLiteral("\"poison\":\"/p3\",");
    scenario(QStringLiteral("[]"), list(links + QStringList{candidate(at("/long"), "Rust")}));
    const RunReport report = run();
    EXPECT_EQ(report.added, 2);
    ASSERT_EQ(report.unjudged.size(), 1);
    EXPECT_EQ(report.unjudged.first().url, at("/p3"));
    EXPECT_EQ(preferences.settings().lastReport, lastOf(report));
    EXPECT_EQ(report.warnings.size(), 1);
}

// What was left gets a second chance; the run is done all the same, and the period moves on.
TEST_F(RefusedLinksTest,
       a_page_that_is_always_refused_holds_the_period_back_once_and_fails_no_later_run) {
    otherTraits = QStringLiteral("\"poison\":\"/other\",");
    int daysAgo = 5;
    const auto period = [&] { return periodStart(preferences.settings(), clock.now()); };
    const auto nothing = QStringLiteral("[]");
    const QString refused = candidate(at("/other"), "Rust");
    const struct {
        QString found;
        int added;
        bool heldBack; ///< the next period starts at the run before this one
    } runs[] = {
        {list({candidate(at("/long"), "Rust"), refused}), 1, true},
        {list({candidate(at("/long"), "Rust"), refused}), 0, false}, // the only new one
        {list({candidate(at("/short"), "Rust"), refused}), 1, false},
        {list({refused}), 0, false},
    };
    for (const auto &one : runs) {
        const QDateTime last = clock.now().addDays(-daysAgo--); // as if days had passed
        preferences.change(&Settings::lastSearch, last);
        scenario(nothing, one.found);
        const RunReport report = run();
        EXPECT_EQ(report.added, one.added);
        EXPECT_EQ(report.unjudged.size(), 1);
        EXPECT_EQ(report.warnings.size(), 1);
        EXPECT_EQ(preferences.settings().lastSearch, report.date);
        EXPECT_EQ(preferences.settings().lastReport, lastOf(report));
        EXPECT_EQ(period() == last, one.heldBack);
        EXPECT_LE(period(), report.date);
    }
    // Another one that is refused beside it: that nothing could be judged may be the judge's
    // fault, twice. The third run is done like any other.
    server.serve("/other2", test::TestReply::page("<title>/other</title>"));
    const auto last = preferences.settings().lastSearch;
    scenario(nothing,
             list({candidate(at("/long"), "Rust"), refused, candidate(at("/other2"), "Rust")}));
    for (int turn = 0; turn < 2; ++turn) {
        EXPECT_THROW(run(), AgentError) << "nothing new could be judged";
        EXPECT_EQ(preferences.settings().lastSearch, last);
    }
    for (int turn = 0; turn < 2; ++turn) {
        const RunReport report = run();
        EXPECT_EQ(report.unjudged.size(), 2);
        EXPECT_EQ(preferences.settings().lastSearch, report.date);
    }
}

// What was given up together with the judge says nothing of the pages: the next run puts them to it
// in batches again.
TEST_F(RefusedLinksTest, links_given_up_with_the_judge_are_no_refused_ones) {
    QStringList found{candidate(at("/short"), "Rust")};
    for (int i = 0; i < 7; ++i) {
        const QByteArray path = "/poison" + QByteArray::number(i);
        test::TestReply reply = test::TestReply::page(page("p"));
        reply.delay = 300ms; // the good link comes first to the judge, and tells that it is up
        server.serve(path, reply);
        found += candidate(server.link(path), "Rust");
    }
    otherTraits = QStringLiteral("\"poison\":\"/poison\",");
    scenario(QStringLiteral("[]"), list(found));
    const RunReport hiccup = run();
    const qsizetype untried = std::ranges::count_if(
        hiccup.unjudged, [](const DroppedLink &link) { return link.untried.value_or(false); });
    ASSERT_GT(untried, 0) << "two in a row were enough";
    otherTraits.clear();
    scenario(QStringLiteral("[]"), list(found.sliced(1)));
    const auto before = claude.calls(u"judge");
    EXPECT_EQ(run().added + hiccup.added, 8);
    EXPECT_LE(claude.calls(u"judge") - before, 1 + hiccup.unjudged.size() - untried);
}

// What a run that was stopped left may be the judge's fault, as in one that failed.
TEST_F(RefusedLinksTest, a_link_that_a_stopped_run_left_is_not_given_up) {
    RunReport stopped;
    stopped.date = clock.now().addDays(-1);
    stopped.cancelled = true;
    stopped.unjudged = {{QStringLiteral("t"), at("/other"), QStringLiteral("r")}};
    store.addRun(stopped);
    otherTraits = QStringLiteral("\"poison\":\"/other\",");
    scenario(QStringLiteral("[]"), list({candidate(at("/other"), "Rust")}));
    EXPECT_THROW(run(), AgentError);
}

// Two pages that are always refused come first in what was found: they keep nobody else from being
// judged, and what was refused once more is not left out without having been tried.
TEST_F(RefusedLinksTest, links_refused_before_are_judged_last_and_make_nobody_give_up) {
    RunReport before;
    before.date = clock.now().addDays(-7);
    QStringList found;
    for (int i = 0; i < 8; ++i) {
        const QByteArray path = (i < 2 ? "/poison" : "/p") + QByteArray::number(i);
        server.serve(path, test::TestReply::page(page("p")));
        found += candidate(server.link(path), "Rust");
        if (i < 3) { // the third is judged today
            before.unjudged += {QStringLiteral("t"), server.link(path), QStringLiteral("r")};
        }
    }
    store.addRun(before);
    otherTraits = QStringLiteral("\"poison\":\"/poison\",");
    scenario(QStringLiteral("[]"), list(found));
    const RunReport report = run();
    EXPECT_EQ(report.added, 6);
    EXPECT_EQ(report.unjudged.size(), 2);
    const QString prompts = claude.prompts();
    const auto sent = [&](const char *path) {
        return prompts.indexOf(QStringLiteral("Link: ") + at(path));
    };
    EXPECT_GT(sent("/poison0"), sent("/p7"));
}

// Six links in a batch that fails: were each tried alone, a judge that is down would be asked
// fourteen times.
TEST_F(RefusedLinksTest, a_judge_that_is_down_is_not_asked_for_every_link) {
    QStringList links;
    for (int i = 0; i < 6; ++i) {
        links += candidate(at("/long") + u'?' + QString::number(i), "Rust");
    }
    scenario(QStringLiteral("[]"), list(links), "fail");
    EXPECT_THROW(run(), AgentError);
    EXPECT_LE(claude.calls(u"judge"), 2 + 2 * 3);
}

} // namespace
} // namespace vorle
