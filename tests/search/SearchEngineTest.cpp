#include "search/SearchEngine.h"

#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "search/Feeds.h"
#include "search/PageReader.h"
#include "search/Pipeline.h"
#include "search/RunHistory.h"
#include "search/SourceImage.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTimer>

#include <gmock/gmock.h>

#include <csignal>

namespace vorle {
namespace {

using namespace std::chrono_literals;

QString candidate(const QString &url, const char *about, const char *title = "Un titre") {
    return QStringLiteral(R"({"title":"%1","url":"%2","kind":"article","about":"%3"})")
        .arg(QString::fromUtf8(title), url, QString::fromUtf8(about));
}

QString list(const QStringList &candidates) { return u'[' + candidates.join(u',') + u']'; }

/// A run on real collaborators: a child process for the agent, real HTTP, real files.
class SearchEngineTest : public testing::Test {
protected:
    void SetUp() override {
        QDir(folder.path()).mkpath(QStringLiteral("home/.local/bin"));
        write(QStringLiteral("home/.local/bin/claude"),
              "#!/bin/sh\nexec python3 " VORLE_SUPPORT "/stand-in-agent.py \"$@\"\n");
        QFile(folder.filePath(QStringLiteral("home/.local/bin/claude")))
            .setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        write(QStringLiteral("home/.claude.json"), R"({"oauthAccount":{}})");
        preferences.change(&Settings::interests, {QStringLiteral("Rust"), QStringLiteral("Vélo")});
        preferences.change(&Settings::projects, {{QStringLiteral("Potager"), QString()}});
        server.serve("/long", test::TestReply::page(page("long")));
        server.serve("/other", test::TestReply::page(page("other")));
        server.serve("/short", test::TestReply::page("<title>Court</title><p>peu"));
    }

    static QByteArray page(const char *name) {
        return QByteArray("<title>Page ") + name + "</title><article>" +
               QByteArray("mot ").repeated(300) + "</article>";
    }

    void write(const QString &name, const QByteArray &bytes) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    /// What each scope answers, and what the judge does.
    void scenario(const QString &project, const QString &topics, const char *judge = "ok",
                  double seconds = 0) {
        write(QStringLiteral("home/scenario.json"),
              QStringLiteral(R"({"candidates":{"came back empty on":%5,"trusts, for their":%6,)"
                             R"(%8"**Potager**":%1,"Topics the person":%2},%9)"
                             R"("judge":"%3","seconds":%4,"dig":%7})")
                  .arg(project, topics, QString::fromUtf8(judge), QString::number(seconds),
                       secondAnswer, sitesAnswer, dugPages, otherScopes, otherTraits)
                  .toUtf8());
    }

    QString at(const char *path) { return server.link(path); }

    RunReport run() { return test::waitFor(engine.run(stop.token()), 60s); }

    QList<TopicPtr> inbox() { return store.topics(TopicStatus::Inbox); }

    AgentEnvironment environment() {
        AgentEnvironment made = AgentEnvironment::ofThisProcess();
        made.variables.insert(QStringLiteral("VORLE_HOME"),
                              folder.filePath(QStringLiteral("home")));
        made.variables.remove(QStringLiteral("VORLE_AGENT"));
        made.sharedFolders.clear();
        return made;
    }

    /// The processes the stand-in ran as that still live.
    int livingAgents() {
        QFile log(folder.filePath(QStringLiteral("home/calls.log")));
        int living = 0;
        if (log.open(QIODevice::ReadOnly)) {
            for (const QByteArray &line : log.readAll().split('\n')) {
                const int pid = line.split(' ').value(1).toInt();
                living += pid > 0 && kill(pid, 0) == 0 ? 1 : 0;
            }
        }
        return living;
    }

    QString promptsSent() {
        QFile log(folder.filePath(QStringLiteral("home/prompts.log")));
        return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
    }

    // What the stand-in answers to the second search, to the screening of feeds and to digging.
    QString secondAnswer = QStringLiteral("[]");
    QString sitesAnswer = QStringLiteral("[]");
    QString dugPages = QStringLiteral("{}");
    QString otherScopes; ///< "**Autre**":[…], with a comma behind each
    QString otherTraits; ///< further members of the scenario, likewise
    QTemporaryDir folder;
    SystemClock clock;
    test::TestServer server;
    Resources resources{QStringLiteral(VORLE_RESOURCES)};
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    TopicStore store{folder.filePath(QStringLiteral("topics.json")), resources, clock};
    HttpClient http{true};
    PageReader reader{http, 5s};
    EngineAgent agent{environment(), [] { return QString(); }, {4s, 4s}};
    Asker asker{agent, resources, 10ms};
    Feeds feeds{http, clock};
    SourceImage images{http,
                       {folder.filePath(QStringLiteral("pictures")), server.url({}).toString()}};
    SearchEngine engine{{preferences, store, asker, reader, feeds, images, clock}};
    CancelSource stop;
};

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

TEST_F(SearchEngineTest, an_unreadable_page_is_dug_for_and_judged_once_more) {
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

// Two addresses that lead to one page are one card, whichever came first.
TEST_F(SearchEngineTest, one_page_is_one_card_across_scopes_and_against_the_store) {
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

TEST_F(SearchEngineTest, a_release_that_is_in_use_already_is_set_apart) {
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
    scenario(list({release("/old", "7.10.0"), release("/new", "7.18.1")}), QStringLiteral("[]"));
    const RunReport report = run();
    ASSERT_EQ(inbox().size(), 1);
    EXPECT_EQ(inbox().first()->dependency, QStringLiteral("undici"));
    EXPECT_EQ(inbox().first()->currentVersion, QStringLiteral("7.12.0"));
    EXPECT_EQ(inbox().first()->newVersion, QStringLiteral("7.18.1"));
    ASSERT_EQ(report.notNewer.size(), 1);
    EXPECT_EQ(report.notNewer.first().url, at("/old"));
    EXPECT_TRUE(promptsSent().contains(u"versions in use: undici 7.12.0"));
}

// A link that one project has passed already may be what another waits for, whoever comes first
// and by whichever address.
TEST_F(SearchEngineTest, what_is_old_news_to_one_project_stays_news_to_another) {
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
        SearchEngine other{{preferences, memory, asker, reader, feeds, images, clock}};
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
TEST_F(SearchEngineTest, where_a_link_led_is_known_to_the_next_run) {
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

TEST_F(SearchEngineTest, one_bad_page_does_not_cost_the_others_their_judgment) {
    QStringList links;
    for (int i = 0; i < 4; ++i) {
        const QByteArray path = "/p" + QByteArray::number(i);
        server.serve(path, test::TestReply::page(page("p")));
        links += candidate(server.link(path), "Rust");
    }
    otherTraits = QStringLiteral("\"overlooked\":\"/p1\",");
    scenario(QStringLiteral("[]"), list(links.first(2)));
    EXPECT_EQ(run().added, 2) << "what got no answer is judged once more, alone";
    const auto last = preferences.settings().lastSearch;
    EXPECT_TRUE(last);

    otherTraits = QStringLiteral("\"poison\":\"/p3\",");
    scenario(QStringLiteral("[]"), list(links + QStringList{candidate(at("/long"), "Rust")}));
    const RunReport report = run();
    EXPECT_EQ(report.added, 2);
    ASSERT_EQ(report.unjudged.size(), 1);
    EXPECT_EQ(report.unjudged.first().url, at("/p3"));
    EXPECT_EQ(preferences.settings().lastSearch, last) << "the next run gets another chance";
    EXPECT_EQ(preferences.settings().lastReport, lastOf(report));
    EXPECT_EQ(report.warnings.size(), 1);
}

// Six links in a batch that fails: were each tried alone, a judge that is down would be asked
// fourteen times.
TEST_F(SearchEngineTest, a_judge_that_is_down_is_not_asked_for_every_link) {
    QStringList links;
    for (int i = 0; i < 6; ++i) {
        links += candidate(at("/long") + u'?' + QString::number(i), "Rust");
    }
    scenario(QStringLiteral("[]"), list(links), "fail");
    EXPECT_THROW(run(), AgentError);
    QFile log(folder.filePath(QStringLiteral("home/calls.log")));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_LE(log.readAll().count("judge"), 2 + 2 * 3);
}

TEST_F(SearchEngineTest, what_was_dug_up_is_kept_without_a_judgment_and_checked_like_any_page) {
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
    ASSERT_EQ(byLink.size(), 5);
    const TopicPtr unjudged = byLink.value(at("/nowhere"));
    ASSERT_TRUE(unjudged);
    EXPECT_EQ(unjudged->sources, (QList<TopicSource>{{QStringLiteral("COPIE"), at("/nowhere")},
                                                     {QStringLiteral("Un titre"), at("/gone")}}));
    EXPECT_EQ(unjudged->summary, u"Je n’ai rien pu lire sur ce sujet : à creuser.");
    EXPECT_TRUE(byLink.contains(at("/lost"))) << "a page that is a card already makes no second";
    const TopicPtr bare = byLink.value(at("/bare"));
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->sources.first().title, u"Sans titre");
    EXPECT_EQ(bare->readLevel, ReadLevel::Full);
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

TEST_F(SearchEngineTest, a_failing_scope_is_reported_and_the_others_go_on) {
    scenario(QStringLiteral("\"fail\""), list({candidate(at("/long"), "Rust")}), "fail-once");
    const RunReport report = run();
    EXPECT_EQ(inbox().size(), 1);
    EXPECT_EQ(report.scopes[0].error, u"L’IA s’est arrêtée (code 3). le serveur est occupé");
}

TEST_F(SearchEngineTest, a_run_fails_when_every_scope_or_every_judgment_did) {
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
    const QList<RunReport> kept = RunHistory(store.file()).reports();
    ASSERT_EQ(kept.size(), 2) << "what it cost is told all the same";
    EXPECT_EQ(kept[0].failed, failures[0].text);
    EXPECT_TRUE(std::ranges::all_of(
        kept[0].scopes, [](const ScopeReport &scope) { return !scope.error.isEmpty(); }));
    EXPECT_DOUBLE_EQ(kept[1].costUSD, 0.75);

    write(QStringLiteral("home/.claude.json"), "{}");
    EXPECT_THROW(run(), AgentError);
    EXPECT_EQ(failures[2].text, u"Claude Code n’est plus connecté.");
    EXPECT_EQ(failureNotice(failures[2]),
              (FailureNotice{QStringLiteral("Je n’ai pas pu fouiller."),
                             QStringLiteral("Claude Code n’est plus connecté. Ouvre vorle pour te "
                                            "reconnecter.")}));
    EXPECT_EQ(failureNotice(failures[0]).text, failures[0].text);
    EXPECT_EQ(engine.phase(), SearchEngine::Phase::Idle);

    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}), "silent");
    write(QStringLiteral("home/.claude.json"), R"({"oauthAccount":{}})");
    EXPECT_EQ(run().unjudged.size(), 1) << "a judge that answers for nobody is no failure";
    EXPECT_TRUE(preferences.settings().lastSearch);
}

TEST_F(SearchEngineTest, one_run_at_a_time) {
    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}));
    auto first = engine.run(stop.token());
    EXPECT_THROW(run(), RunRefused);
    EXPECT_EQ(test::waitFor(std::move(first), 60s).added, 1);
}

// Twelve links make two batches; the second judgment is cut off by the stop.
TEST_F(SearchEngineTest, a_stop_keeps_what_was_judged_and_leaves_no_process) {
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
    EXPECT_EQ(livingAgents(), 0);
    EXPECT_FALSE(preferences.settings().lastSearch);
}

TEST_F(SearchEngineTest, a_stop_while_asking_ends_the_hanging_agents) {
    scenario(QStringLiteral("\"hang\""), QStringLiteral("\"hang\""));
    QTimer::singleShot(400ms, [&] { stop.cancel(); });
    const RunReport report = run();
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.added, 0);
    EXPECT_EQ(livingAgents(), 0);
}

// Three projects, six topics, five sites, half the pages dead and one feed without end: whatever
// fails besides, the run ends, says what happened, and keeps what was judged.
TEST_F(SearchEngineTest, a_large_run_survives_each_failure_in_turn) {
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
    EXPECT_EQ(livingAgents(), 0);
}

// A stop may come at any moment: no process, no temporary file and no half topic is left.
// VORLE_STOPS sets how many are tried.
TEST_F(SearchEngineTest, a_stop_at_any_moment_leaves_nothing_behind) {
    const int stops =
        qEnvironmentVariableIsSet("VORLE_STOPS") ? qEnvironmentVariableIntValue("VORLE_STOPS") : 20;
    // A temporary directory of its own: what other test programs hold there at the moment is
    // theirs.
    QTemporaryDir own;
    const QByteArray formerly = qgetenv("TMPDIR");
    qputenv("TMPDIR", own.path().toLocal8Bit());
    const auto putBack = qScopeGuard(
        [&] { formerly.isEmpty() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", formerly); });
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
        QTimer::singleShot(std::chrono::milliseconds(i * 400 / stops), [&] { source.cancel(); });
        const RunReport report = test::waitFor(engine.run(source.token()), 60s);
        EXPECT_EQ(report.topicIds.size(), report.added);
        EXPECT_EQ(engine.phase(), SearchEngine::Phase::Idle);
    }
    EXPECT_EQ(livingAgents(), 0);
    EXPECT_EQ(leftFiles(), QStringList());
    EXPECT_EQ(store.topics(TopicStatus::Pending).size(), 0);
    TopicStore again{store.file(), resources, clock};
    EXPECT_EQ(again.count(), store.count());
    for (const TopicPtr &topic : again.topics()) {
        EXPECT_FALSE(topic->sources.isEmpty());
        EXPECT_FALSE(topic->summary.isEmpty());
    }
}

} // namespace
} // namespace vorle
