#include "search/Pipeline.h"
#include "search/RunHistory.h"
#include "tests/search/RunFixture.h"

#include <gmock/gmock.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using test::candidate;
using test::list;

class SearchEngineTest : public test::RunFixture {};

TEST_F(SearchEngineTest, brings_judged_topics_from_every_scope_to_the_inbox) {
    scenario(list({candidate(at("/long"), "Potager"), candidate(at("/gone"), "Potager")}),
             list({candidate(at("/short"), "rust"),
                   candidate(at("/long") + QStringLiteral("?utm_source=x#part"), "Rust", "Idem"),
                   candidate(QStringLiteral("ftp://nope"), "Rust")}));
    QStringList statuses;
    QObject::connect(&engine, &SearchEngine::progressed,
                     [&](const RunProgress &progress) { statuses += progress.status; });
    const RunReport report = run();

    ASSERT_EQ(inbox().size(), 3);
    EXPECT_EQ(report.added, 3);
    EXPECT_EQ(report.uncovered, QStringList{QStringLiteral("Vélo")});
    // Two scopes, the second search, one batch, and the digging for the dead page.
    EXPECT_DOUBLE_EQ(report.costUSD, 1.25);
    EXPECT_EQ(report.scopes[1].refused, 1);
    EXPECT_EQ(report.scopes[0].merged + report.scopes[1].merged, 1);
    EXPECT_EQ(report.read.none, 1);
    EXPECT_TRUE(statuses.contains(QStringLiteral("Potager")));
    EXPECT_TRUE(statuses.contains(QStringLiteral("Tes sujets")));
    EXPECT_TRUE(statuses.contains(QStringLiteral("Lecture et tri : 3 sur 3")));

    QMap<QString, TopicPtr> byLink;
    for (const TopicPtr &topic : inbox()) {
        byLink[topic->mainSource()->url] = topic;
    }
    const TopicPtr unread = byLink.value(at("/gone"));
    ASSERT_TRUE(unread);
    EXPECT_EQ(unread->score, 0) << "nothing read, no score, whatever the judge said";
    EXPECT_EQ(unread->summary, u"Je n’ai rien pu lire sur ce sujet : à creuser.");
    EXPECT_EQ(unread->firstStep, u"Ouvrir le lien et décider s’il vaut une recherche de plus.");
    EXPECT_EQ(unread->readLevel, ReadLevel::None);
    EXPECT_EQ(unread->project, QStringLiteral("Potager"));
    const TopicPtr glimpsed = byLink.value(at("/short"));
    ASSERT_TRUE(glimpsed);
    EXPECT_EQ(glimpsed->interest, QStringLiteral("Rust"));
    EXPECT_EQ(glimpsed->origin, Origin::List);
    EXPECT_EQ(glimpsed->readLevel, ReadLevel::Meta);
    EXPECT_EQ(glimpsed->score, 7);
    EXPECT_EQ(preferences.settings().lastReport, lastOf(report));
    EXPECT_EQ(preferences.settings().lastSearch, report.date);

    // The next run is told the links, and drops them when they come back all the same.
    const RunReport again = run();
    EXPECT_EQ(again.added, 0);
    EXPECT_EQ(again.scopes[0].known + again.scopes[1].known, 4);
    EXPECT_EQ(inbox().size(), 3);
}

TEST_F(SearchEngineTest, a_topic_that_came_back_empty_is_searched_once_more) {
    secondAnswer = list({candidate(at("/other"), "Vélo")});
    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}));
    const RunReport report = run();
    EXPECT_EQ(report.added, 2);
    EXPECT_TRUE(report.uncovered.isEmpty());
    ASSERT_EQ(report.scopes.size(), 3);
    EXPECT_EQ(report.scopes[2].origin, Origin::Suggestion);
    EXPECT_TRUE(
        promptsSent().contains(u"Bring at least two links for every topic below.\n- Vélo\n"))
        << "the topic that was answered is not asked again";
    for (const TopicPtr &topic : inbox()) {
        const bool second = topic->mainSource()->url == at("/other");
        EXPECT_EQ(topic->origin, second ? Origin::Suggestion : Origin::List);
        EXPECT_EQ(topic->interest, second ? QStringLiteral("Vélo") : QStringLiteral("Rust"));
    }
}

TEST_F(SearchEngineTest, trusted_sites_are_screened_through_their_feeds) {
    server.serve("/site",
                 test::TestReply::page(
                     "<link rel=\"alternate\" type=\"application/rss+xml\" href=\"/feed\">"));
    const QByteArray now = QLocale::c()
                               .toString(QDateTime::currentDateTimeUtc(),
                                         QStringLiteral("ddd, dd MMM yyyy HH:mm:ss +0000"))
                               .toUtf8();
    server.serve("/feed", [&](const test::TestRequest &) {
        test::TestReply reply;
        reply.contentType = "application/rss+xml";
        reply.body = "<rss><channel><item><title>Une sortie</title><link>" + at("/other").toUtf8() +
                     "</link><pubDate>" + now + "</pubDate></item></channel></rss>";
        return reply;
    });
    preferences.change(&Settings::prioritySites,
                       {PrioritySite{at("/site"), {}, {}}, PrioritySite{at("/none"), {}, {}}});
    sitesAnswer = list({candidate(at("/other"), "Rust"), candidate(at("/long"), "Potager")});
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    const RunReport report = run();
    ASSERT_EQ(inbox().size(), 2);
    EXPECT_EQ(inbox().first()->origin, Origin::Surface);
    for (const TopicPtr &topic : inbox()) {
        const bool ofProject = topic->mainSource()->url == at("/long");
        EXPECT_EQ(topic->project.value_or(QString()), ofProject ? u"Potager" : u"");
        EXPECT_EQ(topic->interest.value_or(QString()), ofProject ? u"" : u"Rust");
    }
    EXPECT_EQ(report.uncovered, QStringList{QStringLiteral("Vélo")});
    EXPECT_TRUE(std::ranges::any_of(
        inbox(), [](const TopicPtr &topic) { return topic->publishedOn.has_value(); }));
    EXPECT_EQ(report.feeds.size(), 1) << "the site without a feed is told";
    EXPECT_TRUE(promptsSent().contains(u"] Une sortie"));
    EXPECT_EQ(preferences.settings().prioritySites.first().feed, at("/feed"));
}

TEST_F(SearchEngineTest, each_source_of_a_card_has_its_picture) {
    const QByteArray picture = "\x89PNG\r\n\x1A\n" +
                               QByteArray("\0\0\0\x0DIHDR\0\0\0\x20\0\0\0\x20", 16) +
                               QByteArray(9, '\0');
    server.serve("/favicon.ico", test::TestReply::page(picture));
    server.serve("/moved", test::TestReply::redirect("/long"));
    scenario(QStringLiteral("[]"), list({candidate(at("/moved"), "Rust")}));
    run();
    ASSERT_EQ(inbox().size(), 1);
    QStringList pictured;
    for (const Picture &one : inbox().first()->gallery) {
        pictured += one.url;
    }
    EXPECT_EQ(pictured, (QStringList{at("/moved"), at("/long")}));
}

TEST_F(SearchEngineTest, the_screening_takes_no_word_of_a_stranger_for_a_placeholder) {
    const SitesRequest request{.sites = {},
                               .today = QDate(2026, 11, 21),
                               .projects = {},
                               .interests = {},
                               .tools = {},
                               .count = 8,
                               .knownLinks = {QStringLiteral("https://a.fr/@ITEMS/@ITEMS")}};
    const QString prompt =
        Pipeline(asker)
            .screening(request, {QStringLiteral("[a] @KNOWN une sortie")}, AgentKind::Claude)
            .prompt;
    EXPECT_EQ(prompt.count(QStringLiteral("une sortie")), 1);
    EXPECT_TRUE(prompt.contains(u"[a] @KNOWN une sortie"));
    EXPECT_TRUE(prompt.contains(u"https://a.fr/@ITEMS/@ITEMS"));
}

TEST_F(SearchEngineTest, the_reports_of_the_last_runs_are_kept) {
    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}));
    const RunReport first = run();
    const RunReport second = run();
    const RunHistory history(store.file());
    EXPECT_EQ(history.reports(), (QList<RunReport>{first, second}));
    for (int i = 0; i < 60; ++i) {
        history.add(second);
    }
    EXPECT_EQ(history.reports().size(), RunHistory::mostReports);
    write(QStringLiteral("runs.json"), "{");
    EXPECT_TRUE(history.reports().isEmpty());
    history.add(first);
    EXPECT_EQ(history.reports(), QList<RunReport>{first});
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("runs.json.illisible-*")}).size(), 1);
}

TEST_F(SearchEngineTest, an_empty_territory_never_reaches_the_agent) {
    preferences.change(&Settings::interests, {});
    preferences.change(&Settings::projects, {});
    preferences.change(&Settings::addedTools, {QStringLiteral("Figma")});
    EXPECT_THROW(run(), RunRefused);
    EXPECT_EQ(engine.progress().status,
              u"Rien à fouiller : ajoute un dossier de projet ou un sujet dans Ton territoire.");
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("home/calls.log"))));
}

TEST_F(SearchEngineTest, one_run_at_a_time) {
    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}));
    auto first = engine.run(stop.token());
    EXPECT_THROW(run(), RunRefused);
    EXPECT_EQ(test::waitFor(std::move(first), 60s).added, 1);
}

} // namespace
} // namespace vorle
