#include "tests/search/run/RunFixture.h"

#include <gmock/gmock.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using test::candidate;
using test::list;

class HarvestTest : public test::RunFixture {};

TEST_F(HarvestTest, an_unreadable_page_is_dug_for_and_judged_once_more) {
    dugPages =
        QStringLiteral(R"({"%1":{"url":"%2","title":"Une copie","what":"x"},)"
                       R"("%3":{"url":"%4","title":"Ailleurs","what":"Ce que dit la page."}})")
            .arg(at("/gone"), at("/other"), at("/lost"), at("/nowhere"));
    scenario(list({candidate(at("/gone"), "Potager"), candidate(at("/lost"), "Potager"),
                   candidate(at("/dead"), "Potager")}),
             QStringLiteral("[]"));
    QStringList statuses;
    QObject::connect(&engine, &SearchEngine::progressed,
                     [&](const RunProgress &progress) { statuses += progress.status; });
    const RunReport report = run();
    EXPECT_TRUE(statuses.contains(QStringLiteral("Recherche des pages illisibles : 3")));
    EXPECT_EQ(report.dug, 2);
    EXPECT_EQ(report.added, 3);
    ASSERT_EQ(inbox().size(), 3);
    QMap<QString, TopicPtr> byLink;
    for (const TopicPtr &topic : inbox()) {
        byLink[topic->mainSource()->url] = topic;
    }
    const TopicPtr copy = byLink.value(at("/other"));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->readLevel, ReadLevel::Full);
    EXPECT_EQ(copy->score, 7);
    EXPECT_EQ(copy->sources.last().url, at("/gone")) << "the dead address is known from now on";
    const TopicPtr told = byLink.value(at("/nowhere"));
    ASSERT_TRUE(told);
    EXPECT_EQ(told->readLevel, ReadLevel::Meta) << "the agent's words stand for the page";
    EXPECT_TRUE(told->seenText->contains("Ce que dit la page."));
    EXPECT_TRUE(byLink.contains(at("/dead")));
}

// What the digger read is the judge's whenever the page gives this machine less than its text.
TEST_F(HarvestTest, what_the_digger_read_counts_beside_a_title_and_a_description) {
    server.serve("/thin",
                 test::TestReply::page("<title>Maigre</title>"
                                       "<meta name=\"description\" content=\"Une ligne.\">"));
    dugPages = QStringLiteral(R"({"%1":{"url":"%2","title":"T","what":"DIT-A"},)"
                              R"("%3":{"url":"%4","title":"T","what":"DIT-B"}})")
                   .arg(at("/gone1"), at("/thin"), at("/gone2"), at("/long"));
    scenario(list({candidate(at("/gone1"), "Potager"), candidate(at("/gone2"), "Potager")}),
             QStringLiteral("[]"));
    EXPECT_EQ(run().dug, 2);
    ASSERT_EQ(inbox().size(), 2);
    for (const TopicPtr &topic : inbox()) {
        const bool thin = topic->mainSource()->url == at("/thin");
        EXPECT_EQ(topic->readLevel, thin ? ReadLevel::Meta : ReadLevel::Full);
        EXPECT_EQ(topic->seenText->contains("DIT-"), thin);
        EXPECT_EQ(topic->seenText->contains("Une ligne."), thin);
    }
    EXPECT_TRUE(claude.prompts().contains(u"Une ligne.\nDIT-A"));
}

// The news of a page that could not be read may stand on a page that another card has: it is one
// piece of news, and one card, for both who brought it.
TEST_F(HarvestTest, a_dug_page_that_is_another_card_joins_that_card) {
    scenario(list({candidate(at("/short"), "Potager")}), QStringLiteral("[]"));
    run();
    server.serve("/moved", test::TestReply::redirect("/long"));
    dugPages =
        QStringLiteral(R"({"%1":{"url":"%2","title":"a","what":"a"},)"
                       R"("%3":{"url":"%4","title":"b","what":"b"},)"
                       R"("%5":{"url":"%6","title":"c","what":"c"}})")
            .arg(at("/gone1"), at("/long"), at("/gone2"), at("/moved"), at("/gone3"), at("/short"));
    scenario(list({candidate(at("/gone1"), "Potager"), candidate(at("/gone2"), "Potager"),
                   candidate(at("/gone3"), "Potager")}),
             list({candidate(at("/long"), "Rust")}));
    const RunReport report = run();
    ASSERT_EQ(inbox().size(), 2);
    EXPECT_EQ(report.added, 1);
    EXPECT_EQ(report.topicIds.size(), 1);
    EXPECT_EQ(report.scopes[0].merged + report.scopes[0].known, 3);
    for (const TopicPtr &topic : inbox()) {
        const bool first = topic->mainSource()->url == at("/short");
        EXPECT_EQ(topic->sources.size(), first ? 2 : 4) << "every address is known from now on";
        EXPECT_EQ(topic->project, QStringLiteral("Potager"));
        EXPECT_EQ(topic->interest.has_value(), !first);
        EXPECT_NE(topic->readLevel, ReadLevel::None);
    }
    EXPECT_EQ(store.count(), 2);
    EXPECT_EQ(TopicStore(store.file(), resources, clock).count(), 2);
}

// Two addresses that lead to one page are one card, whichever came first.
TEST_F(HarvestTest, one_page_is_one_card_across_scopes_and_against_the_store) {
    server.serve("/moved", test::TestReply::redirect("/long"));
    scenario(list({candidate(at("/moved"), "Potager")}), list({candidate(at("/long"), "Rust")}));
    run();
    ASSERT_EQ(inbox().size(), 1);
    EXPECT_EQ(inbox().first()->sources.size(), 2);

    server.serve("/again", test::TestReply::redirect("/long"));
    scenario(list({candidate(at("/again"), "Potager")}), QStringLiteral("[]"));
    const RunReport report = run();
    EXPECT_EQ(report.added, 0);
    ASSERT_EQ(inbox().size(), 1);
    EXPECT_EQ(inbox().first()->sources.size(), 3);
}

// What the user set aside makes no second topic: its coming back must be told all the same.
TEST_F(HarvestTest, a_link_set_aside_that_a_run_finds_again_is_told) {
    const QString none = QStringLiteral("[]");
    scenario(list({candidate(at("/long"), "Potager"), candidate(at("/other"), "Potager")}), none);
    run();
    ASSERT_EQ(inbox().size(), 2);
    const bool first = inbox().first()->mainSource()->url == at("/long");
    const QUuid aside = inbox().at(first ? 0 : 1)->id;
    const QUuid kept = inbox().at(first ? 1 : 0)->id;
    store.keep(kept);
    // Another topic with the same link must not hide the one that waits.
    Topic twin = *store.topic(aside);
    twin.id = QUuid::createUuid();
    twin.status = TopicStatus::Done;
    store.add({twin});
    QList<QUuid> told;
    QObject::connect(&rediscoveries, &RediscoveryLog::found, [&](const QUuid &id) { told += id; });

    server.serve("/again", test::TestReply::redirect("/long"));
    const struct {
        QString found;
        bool moves = true;
    } cases[] = {
        {list({candidate(at("/long") + QStringLiteral("?utm_source=x"), "Potager")})},
        {list({candidate(at("/other"), "Potager")}), false},
        {list({candidate(at("/again"), "Potager")})},
    };
    for (const auto &one : cases) {
        store.postpone(aside);
        told.clear();
        scenario(one.found, none);
        EXPECT_EQ(run().added, 0);
        EXPECT_EQ(told, one.moves ? QList{aside} : QList<QUuid>());
    }
    EXPECT_EQ(store.topic(aside)->sources.size(), 2) << "the other address is one of its own now";
    RediscoveryLog later(store, clock);
    EXPECT_EQ(later.topics(), QList{aside});
    EXPECT_TRUE(later.isSince(aside, store.topic(aside)->foundAt.addSecs(-60)));
}

TEST_F(HarvestTest, a_release_that_is_in_use_already_is_set_apart) {
    QDir(folder.path()).mkdir(QStringLiteral("code"));
    write(QStringLiteral("code/package.json"), R"({"dependencies":{"undici":"^7.0.0"}})");
    write(QStringLiteral("code/package-lock.json"),
          R"({"lockfileVersion":3,"packages":{"node_modules/undici":{"version":"7.12.0"}}})");
    const auto release = [&](const char *path, const char *version) {
        server.serve(path, test::TestReply::page("<title>undici " + QByteArray(version) +
                                                 " released</title><article>" +
                                                 QByteArray("mot ").repeated(300) + "</article>"));
        return candidate(at(path), "undici");
    };
    preferences.change(&Settings::projects,
                       {{QStringLiteral("Potager"), folder.filePath(QStringLiteral("code"))}});
    // The agent keeps one from a feed: put to it again, it would be read in vain for a month.
    server.serve("/feed", [&](const test::TestRequest &) {
        test::TestReply reply;
        reply.contentType = "application/rss+xml";
        reply.body = "<rss><channel><item><title>Item kept</title><link>" + at("/kept").toUtf8() +
                     "</link></item></channel></rss>";
        return reply;
    });
    preferences.change(&Settings::prioritySites, {PrioritySite{at("/feed"), {}, {}}});
    sitesAnswer = list({release("/kept", "7.11.0")});
    scenario(list({release("/old", "7.10.0"), release("/new", "7.18.1")}), QStringLiteral("[]"));
    const RunReport report = run();
    ASSERT_EQ(inbox().size(), 1);
    EXPECT_EQ(inbox().first()->dependency, QStringLiteral("undici"));
    EXPECT_EQ(inbox().first()->currentVersion, QStringLiteral("7.12.0"));
    EXPECT_EQ(inbox().first()->newVersion, QStringLiteral("7.18.1"));
    QStringList old;
    for (const DroppedLink &link : report.notNewer) {
        old += link.url;
    }
    EXPECT_THAT(old, testing::UnorderedElementsAre(at("/old"), at("/kept")));
    EXPECT_TRUE(claude.prompts().contains(u"versions in use: undici 7.12.0"));
    run();
    EXPECT_EQ(claude.prompts().count(QStringLiteral("] Item kept")), 1);
}

// A link that one project has passed already may be what another waits for, whoever comes first
// and by whichever address.
TEST_F(HarvestTest, what_is_old_news_to_one_project_stays_news_to_another) {
    const auto project = [&](const char *name, const char *version) {
        const QString path = folder.filePath(QString::fromUtf8(name));
        QDir().mkpath(path);
        write(QString::fromUtf8(name) + QStringLiteral("/package.json"),
              R"({"dependencies":{"undici":"^7.0.0"}})");
        write(QString::fromUtf8(name) + QStringLiteral("/package-lock.json"),
              QByteArray(R"({"lockfileVersion":3,"packages":{"node_modules/undici":{"version":")") +
                  version + "\"}}}");
        return path;
    };
    preferences.change(&Settings::projects,
                       {{QStringLiteral("Potager"), project("Potager", "7.18.1")},
                        {QStringLiteral("Tiravue"), project("Tiravue", "7.10.0")}});
    server.serve("/rel", test::TestReply::page("<title>undici 7.12.0 released</title><article>" +
                                               QByteArray("mot ").repeated(300) + "</article>"));
    server.serve("/moved", test::TestReply::redirect("/rel"));
    const QString none = QStringLiteral("[]");
    const QString release = list({candidate(at("/rel"), "undici")});
    const QString moved = list({candidate(at("/moved"), "undici")});
    const struct {
        const char *late; ///< answers once what the others found was read
        QString tiravue;
        QString topics;
        std::optional<QString> owner;
        bool added = true;
    } cases[] = {
        {"**nobody**", release, none, QStringLiteral("Tiravue")},
        {"**Tiravue**", release, none, QStringLiteral("Tiravue")},
        {"**Tiravue**", moved, none, QStringLiteral("Tiravue")},
        {"**Potager**", moved, none, QStringLiteral("Tiravue")},
        {"Topics the person", none, list({candidate(at("/rel"), "Rust")}), std::nullopt},
        {"**nobody**", none, none, std::nullopt, false},
    };
    for (const auto &one : cases) {
        otherScopes = QStringLiteral("\"**Tiravue**\":%1,").arg(one.tiravue);
        otherTraits = QStringLiteral("\"delays\":{\"%1\":0.7},").arg(QString::fromUtf8(one.late));
        scenario(release, one.topics);
        TopicStore memory{QString(), resources, clock};
        ScoreProvenanceLog otherProvenance{memory, clock};
        RediscoveryLog otherFinds{memory, clock};
        SearchEngine other{{preferences, memory, otherProvenance, otherFinds, asker, reader, feeds,
                            images, clock}};
        const RunReport report = test::waitFor(other.run(stop.token()), 60s);
        EXPECT_EQ(report.notNewer.isEmpty(), one.added) << one.late;
        ASSERT_EQ(memory.count(), one.added ? 1 : 0) << one.late;
        for (const TopicPtr &topic : memory.topics()) {
            EXPECT_EQ(topic->project, one.owner) << one.late;
            EXPECT_EQ(topic->currentVersion,
                      one.owner ? std::optional(QStringLiteral("7.10.0")) : std::nullopt);
            EXPECT_EQ(topic->interest.has_value(), !one.owner) << one.late;
        }
    }
}

// What a run learned of where links lead counts in the next one; that many links end at one door
// does not make them one.
TEST_F(HarvestTest, where_a_link_led_is_known_to_the_next_run) {
    server.serve("/moved", test::TestReply::redirect("/long"));
    for (const auto &[from, to] : {std::pair("/a", "/b"), std::pair("/b", "/a")}) {
        server.serve(from, [to](const test::TestRequest &request) {
            return request.target.contains('?')
                       ? test::TestReply::page(page("ab"))
                       : test::TestReply::redirect(QByteArray(to) + "?utm_source=x");
        });
    }
    server.serve("/login", test::TestReply::page(page("login")));
    server.serve("/closed1", test::TestReply::redirect("/login"));
    server.serve("/closed2", test::TestReply::redirect("/login"));
    scenario(QStringLiteral("[]"),
             list({candidate(at("/moved"), "Rust"), candidate(at("/closed1"), "Rust"),
                   candidate(at("/closed2"), "Rust"), candidate(at("/a"), "Rust"),
                   candidate(at("/b"), "Rust")}));
    EXPECT_EQ(run().added, 4) << "two links that lead to each other are one card";
    QStringList ends;
    for (const TopicPtr &topic : inbox()) {
        ends += topic->sources.last().url;
        EXPECT_LE(topic->sources.size(), 3);
    }
    EXPECT_TRUE(ends.contains(at("/long")));
    EXPECT_FALSE(ends.contains(at("/login")));

    scenario(QStringLiteral("[]"),
             list({candidate(at("/long"), "Rust"), candidate(at("/closed3"), "Rust")}));
    server.serve("/closed3", test::TestReply::redirect("/login"));
    EXPECT_EQ(run().added, 1);
    EXPECT_EQ(inbox().last()->sources.first().url, at("/closed3"));
}

TEST_F(HarvestTest, what_was_dug_up_is_kept_without_a_judgment_and_checked_like_any_page) {
    server.serve("/again", test::TestReply::redirect("/long"));
    server.serve("/bare", test::TestReply::page("<article>" + QByteArray("mot ").repeated(300)));
    dugPages = QStringLiteral(R"({"%1":{"url":"%2","title":"COPIE","what":"Ce que dit la COPIE"},)"
                              R"("%3":{"url":"%4","title":"x","what":"x"},)"
                              R"("%5":{"url":"%6","title":"Sans titre","what":"x"},)"
                              R"("%7":{"id":"c-9223372036854775808","url":"%6","title":"",)"
                              R"("what":""}})")
                   .arg(at("/gone"), at("/nowhere"), at("/lost"), at("/again"), at("/dead"),
                        at("/bare"), at("/void"));
    otherTraits = QStringLiteral("\"poison\":\"dit la COPIE\",");
    scenario(list({candidate(at("/gone"), "Potager"), candidate(at("/lost"), "Potager"),
                   candidate(at("/dead"), "Potager"), candidate(at("/void"), "Potager")}),
             list({candidate(at("/long"), "Rust")}));
    const RunReport report = run();
    EXPECT_EQ(report.dug, 1);
    EXPECT_TRUE(preferences.settings().lastSearch) << "the link is kept, there is no need to redo";
    QMap<QString, TopicPtr> byLink;
    for (const TopicPtr &topic : inbox()) {
        byLink[topic->mainSource()->url] = topic;
    }
    ASSERT_EQ(byLink.size(), 4);
    const TopicPtr unjudged = byLink.value(at("/nowhere"));
    ASSERT_TRUE(unjudged);
    EXPECT_EQ(unjudged->sources, (QList<TopicSource>{{QStringLiteral("COPIE"), at("/nowhere")},
                                                     {QStringLiteral("Un titre"), at("/gone")}}));
    EXPECT_EQ(unjudged->summary, u"Je n’ai rien pu lire sur ce sujet : à creuser.");
    ASSERT_TRUE(byLink.contains(at("/long")));
    EXPECT_EQ(byLink.value(at("/long"))->sources.size(), 3) << "a page that is a card has it";
    const TopicPtr bare = byLink.value(at("/bare"));
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->sources.first().title, u"Sans titre");
    EXPECT_EQ(bare->readLevel, ReadLevel::Full);
}

} // namespace
} // namespace vorle
