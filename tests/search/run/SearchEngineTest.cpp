#include "core/RunHistory.h"
#include "search/run/Pipeline.h"
#include "tests/search/run/RunFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

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
        claude.prompts().contains(u"Bring at least two links for every topic below.\n- Vélo\n"))
        << "the topic that was answered is not asked again";
    for (const TopicPtr &topic : inbox()) {
        const bool second = topic->mainSource()->url == at("/other");
        EXPECT_EQ(topic->origin, second ? Origin::Suggestion : Origin::List);
        EXPECT_EQ(topic->interest, second ? QStringLiteral("Vélo") : QStringLiteral("Rust"));
    }
}

// A topic's name may stand inside another's; and another scope's find is no answer to it, whoever
// comes first.
TEST_F(SearchEngineTest, a_topic_is_covered_by_its_own_name_in_its_own_search_alone) {
    preferences.change(&Settings::interests,
                       {QStringLiteral("React"), QStringLiteral("React Native"),
                        QStringLiteral("C"), QStringLiteral("Go"), QStringLiteral("Vélo")});
    preferences.change(&Settings::projects, {{QStringLiteral("Potager"), QString()},
                                             {QStringLiteral("Go Kart"), QString()}});
    for (const char *path : {"/p1", "/p2", "/p3", "/p4"}) {
        server.serve(path, test::TestReply::page(page(path)));
    }
    otherScopes = QStringLiteral("\"**Go Kart**\":%1,")
                      .arg(list({candidate(at("/p1"), "Go Kart"), candidate(at("/p2"), "React")}));
    for (const char *late : {"**Go Kart**", "Topics the person"}) {
        otherTraits = QStringLiteral("\"delays\":{\"%1\":0.4},").arg(QString::fromUtf8(late));
        scenario(QStringLiteral("[]"),
                 list({candidate(at("/p3"), "React Native"), candidate(at("/p4"), "VELO")}));
        TopicStore memory{QString(), resources, clock};
        ScoreProvenanceLog otherProvenance{memory, clock};
        RediscoveryLog otherFinds{memory, clock};
        SearchEngine other{{preferences, memory, otherProvenance, otherFinds, asker, reader, feeds,
                            images, clock}};
        const RunReport report = test::waitFor(other.run(stop.token()), 60s);
        EXPECT_EQ(report.uncovered,
                  (QStringList{QStringLiteral("React"), QStringLiteral("C"), QStringLiteral("Go")}))
            << late;
        QMap<QString, TopicPtr> byLink;
        for (const TopicPtr &topic : memory.topics()) {
            byLink[topic->mainSource()->url] = topic;
        }
        ASSERT_EQ(byLink.size(), 4) << late;
        EXPECT_EQ(byLink[at("/p1")]->project, QStringLiteral("Go Kart"));
        EXPECT_FALSE(byLink[at("/p1")]->interest);
        EXPECT_EQ(byLink[at("/p3")]->interest, QStringLiteral("React Native"));
        EXPECT_EQ(byLink[at("/p4")]->interest, QStringLiteral("Vélo"));
    }
    EXPECT_TRUE(
        claude.prompts().contains(u"Bring at least two links for every topic below.\n- React\n"
                                  u"- C\n- Go\n"));
}

// Far more links than were asked for: the surplus is told, but for what answers a topic that
// nothing else did.
TEST_F(SearchEngineTest, links_far_past_what_was_asked_are_told_or_answer_a_topic) {
    QStringList found;
    for (int i = 0; i < 30; ++i) { // 8 are asked for
        found += candidate(at("/long") + QStringLiteral("?p=%1").arg(i), i == 29 ? "Vélo" : "Rust");
    }
    scenario(QStringLiteral("[]"), list(found));
    const RunReport report = run();
    EXPECT_EQ(report.scopes[1].found, 30);
    EXPECT_EQ(report.added, 25);
    ASSERT_EQ(report.surplus.value_or(QList<DroppedLink>()).size(), 5);
    EXPECT_EQ(report.surplus->first().url, at("/long") + QStringLiteral("?p=24"));
    EXPECT_TRUE(report.uncovered.isEmpty());
    EXPECT_EQ(report.scopes.size(), 2) << "no second search";

    // The judge never saw that link: that it fails now is the first time.
    otherTraits = QStringLiteral("\"poison\":\"p=24\",");
    scenario(list({candidate(at("/other"), "Potager")}),
             list({candidate(at("/long") + QStringLiteral("?p=24"), "Rust")}));
    const QDateTime last = clock.now().addDays(-3);
    preferences.change(&Settings::lastSearch, last);
    EXPECT_EQ(run().added, 1);
    EXPECT_EQ(periodStart(preferences.settings(), clock.now()), last) << "it is looked for again";
}

TEST_F(SearchEngineTest, a_territory_of_which_nothing_can_be_asked_costs_no_call) {
    preferences.change(&Settings::interests, {});
    preferences.change(&Settings::projects,
                       {{QStringLiteral("Parti"), folder.filePath(QStringLiteral("parti"))}});
    EXPECT_THROW(run(), RunRefused);
    EXPECT_TRUE(engine.progress().status.contains(folder.filePath(QStringLiteral("parti"))));
    EXPECT_FALSE(preferences.settings().lastSearch);
    EXPECT_EQ(claude.prompts(), QString());
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
    EXPECT_EQ(report.uncovered, (QStringList{QStringLiteral("Rust"), QStringLiteral("Vélo")}))
        << "what a site brings is no answer to a topic's own search";
    EXPECT_TRUE(std::ranges::any_of(
        inbox(), [](const TopicPtr &topic) { return topic->publishedOn.has_value(); }));
    EXPECT_EQ(report.feeds.size(), 1) << "the site without a feed is told";
    EXPECT_TRUE(claude.prompts().contains(u"] Une sortie"));
    EXPECT_EQ(preferences.settings().prioritySites.first().feed, at("/feed"));
}

// Each item is looked at once: one that became a topic and one that was passed over are not put to
// the agent again, unless the territory it was passed over for is another now.
TEST_F(SearchEngineTest, an_item_of_a_feed_is_screened_once) {
    const QByteArray now = QLocale::c()
                               .toString(QDateTime::currentDateTimeUtc(),
                                         QStringLiteral("ddd, dd MMM yyyy HH:mm:ss +0000"))
                               .toUtf8();
    server.serve("/site",
                 test::TestReply::page(
                     "<link rel=\"alternate\" type=\"application/rss+xml\" href=\"/feed\">"));
    server.serve("/feed", [&](const test::TestRequest &) {
        test::TestReply reply;
        reply.contentType = "application/rss+xml";
        reply.body = "<rss><channel>";
        for (const char *path : {"/other", "/long", "/short"}) {
            reply.body += "<item><title>Item " + QByteArray(path) + "</title><link>" +
                          at(path).toUtf8() + "</link>";
            reply.body += path == QByteArray("/short") ? QByteArray("</item>")
                                                       : "<pubDate>" + now + "</pubDate></item>";
        }
        reply.body += "</channel></rss>";
        return reply;
    });
    preferences.change(&Settings::prioritySites, {PrioritySite{at("/site"), {}, {}}});
    sitesAnswer = list({candidate(at("/other"), "Rust")});
    // What another scope brings is no merit of the site, though its feed had it too.
    scenario(QStringLiteral("[]"), list({candidate(at("/short"), "Vélo")}));
    const auto screenings = [&] { return claude.prompts().count(QStringLiteral("] Item /long")); };
    const RunReport first = run();
    EXPECT_EQ(first.added, 2);
    ASSERT_EQ(first.sites.value_or(QList<SiteReport>()).size(), 1);
    EXPECT_EQ(first.sites->first().items, 3);
    EXPECT_EQ(first.sites->first().found, 1);
    EXPECT_EQ(first.sites->first().latest, QStringLiteral("Item /other"));
    EXPECT_TRUE(first.sites->first().latestAt);
    ASSERT_EQ(first.sites->first().yield.topicIds.size(), 1);
    EXPECT_EQ(store.topic(first.sites->first().yield.topicIds.first())->origin, Origin::Surface);
    EXPECT_EQ(screenings(), 1);
    EXPECT_EQ(run().added, 0);
    EXPECT_EQ(screenings(), 1) << "nothing is left to look at, and no call is made";
    preferences.change(&Settings::addedTools, {QStringLiteral("Figma")});
    run();
    EXPECT_EQ(screenings(), 2);
    EXPECT_EQ(claude.prompts().count(QStringLiteral("] Item /other")), 1);
    // A screening that failed passed over nothing.
    preferences.change(&Settings::addedTools, {});
    sitesAnswer = QStringLiteral("\"fail\"");
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    run();
    const auto tried = screenings();
    EXPECT_GT(tried, 2);
    run();
    EXPECT_GT(screenings(), tried);
}

// Three projects that never answer hold every place but the one of the feeds.
TEST_F(SearchEngineTest, the_feeds_do_not_wait_for_slow_projects) {
    preferences.change(&Settings::projects, {{QStringLiteral("A"), QString()},
                                             {QStringLiteral("B"), QString()},
                                             {QStringLiteral("Potager"), QString()}});
    bool asked = false;
    server.serve("/site", [&](const test::TestRequest &) {
        asked = true;
        stop.cancel();
        return test::TestReply::page("");
    });
    preferences.change(&Settings::prioritySites, {PrioritySite{at("/site"), {}, {}}});
    otherScopes = QStringLiteral("\"**A**\":\"hang\",\"**B**\":\"hang\",");
    scenario(QStringLiteral("\"hang\""), QStringLiteral("\"hang\""));
    EXPECT_TRUE(run().cancelled);
    EXPECT_TRUE(asked);
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
    EXPECT_EQ(store.history(), (QList<RunReport>{first, second}));
    const RunHistory history(store.file());
    RunReport full = second;
    full.unjudged = {{QStringLiteral("t"), QStringLiteral("u"), QStringLiteral("r")}};
    ASSERT_FALSE(full.scopes.isEmpty());
    full.scopes.first().yield = Yield{.topicIds = {QUuid::createUuid()}, .added = 3, .kept = 2};
    history.replace(QList<RunReport>(RunHistory::maxReports + 1, full));
    const QList<RunReport> kept = store.history();
    ASSERT_EQ(kept.size(), RunHistory::maxReports);
    EXPECT_EQ(history.reports().last(), full);
    // Of the older ones the numbers stay, also when somebody looks what became of their topics.
    EXPECT_TRUE(kept.first().unjudged.isEmpty());
    EXPECT_EQ(kept.first().scopes.first().yield->kept, 2);
    EXPECT_EQ(kept.first().steps, full.steps);
    write(QStringLiteral("runs.json"), "{");
    EXPECT_TRUE(history.reports().isEmpty());
    store.addRun(first);
    EXPECT_EQ(store.history(), QList<RunReport>{first});
    EXPECT_EQ(QDir(folder.path()).entryList({QStringLiteral("runs.json.illisible-*")}).size(), 1);
}

// What the report screen counts: calls, time and money by step, and what became of the topics by
// scope; a report of an earlier version, without all that, still reads.
TEST_F(SearchEngineTest, a_report_tells_its_calls_by_step_and_its_topics_by_scope) {
    scenario(list({candidate(at("/long"), "Potager"), candidate(at("/gone"), "Potager")}),
             list({candidate(at("/other"), "Rust")}), "fail-once");
    const RunReport report = run();
    ASSERT_TRUE(report.steps);
    double cost = 0;
    QMap<QString, int> calls;
    for (const StepReport &step : *report.steps) {
        calls[json::rawText(step.step)] = step.calls;
        cost += step.costUSD;
        EXPECT_GT(step.seconds, 0);
        EXPECT_EQ(step.failed, 0) << "a call that was made once more and then answered is none";
    }
    EXPECT_EQ(calls, (QMap<QString, int>{{QStringLiteral("candidates"), 3},
                                         {QStringLiteral("dig"), 1},
                                         {QStringLiteral("judge"), 1}}));
    EXPECT_DOUBLE_EQ(cost, report.costUSD);
    const auto yield = [&](qsizetype scope) { return *store.history().last().scopes[scope].yield; };
    EXPECT_EQ(yield(0).added, 2);
    EXPECT_EQ(yield(1).added, 1);
    store.keep(yield(0).topicIds[0]);
    store.markDone(yield(0).topicIds[1]);
    store.dismiss(yield(1).topicIds[0]);
    EXPECT_EQ(yield(0).kept, 2);
    EXPECT_EQ(yield(0).done, 1);
    EXPECT_EQ(yield(1).kept, 0);

    QFile kept(folder.filePath(QStringLiteral("runs.json")));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    QJsonArray runs = QJsonDocument::fromJson(kept.readAll()).array();
    kept.close();
    QJsonObject earlier = runs[0].toObject();
    QJsonArray scopes = earlier[QStringLiteral("scopes")].toArray();
    QJsonObject scope = scopes[0].toObject();
    scope.remove(QStringLiteral("yield"));
    scopes[0] = scope;
    earlier[QStringLiteral("scopes")] = scopes;
    earlier.remove(QStringLiteral("steps"));
    earlier.remove(QStringLiteral("sites"));
    write(QStringLiteral("runs.json"), QJsonDocument(QJsonArray{earlier}).toJson());
    ASSERT_EQ(store.history().size(), 1);
    EXPECT_FALSE(store.history().first().steps);
}

TEST_F(SearchEngineTest, an_empty_territory_never_reaches_the_agent) {
    preferences.change(&Settings::interests, {});
    preferences.change(&Settings::projects, {});
    preferences.change(&Settings::addedTools, {QStringLiteral("Figma")});
    EXPECT_THROW(run(), RunRefused);
    EXPECT_EQ(engine.progress().status,
              u"Rien à fouiller : ajoute un dossier de projet ou un sujet dans Ton territoire.");
    EXPECT_TRUE(claude.calls().isEmpty());
}

TEST_F(SearchEngineTest, one_run_at_a_time) {
    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}));
    auto first = engine.run(stop.token());
    EXPECT_THROW(run(), RunRefused);
    EXPECT_EQ(test::waitFor(std::move(first), 60s).added, 1);
}

} // namespace
} // namespace vorle
