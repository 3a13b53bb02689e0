#include "search/SearchEngine.h"

#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "search/PageReader.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
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
              QStringLiteral(R"({"candidates":{"**Potager**":%1,"Topics the person":%2},)"
                             R"("judge":"%3","seconds":%4})")
                  .arg(project, topics, QString::fromUtf8(judge))
                  .arg(seconds)
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

    QTemporaryDir folder;
    SystemClock clock;
    test::TestServer server;
    Resources resources{QStringLiteral(VORLE_RESOURCES)};
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    TopicStore store{folder.filePath(QStringLiteral("topics.json")), resources, clock};
    HttpClient http{true};
    PageReader reader{http, 5s};
    EngineAgent agent{environment(), [] { return QString(); }};
    Asker asker{agent, resources, 10ms};
    SearchEngine engine{preferences, store, asker, reader, clock};
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
    EXPECT_EQ(report.last.added, 3);
    EXPECT_EQ(report.last.uncovered, QStringList{QStringLiteral("Vélo")});
    EXPECT_DOUBLE_EQ(report.last.costUSD, 0.75); // two scopes and one batch
    EXPECT_EQ(report.scopes[1].refused, 1);
    EXPECT_EQ(report.scopes[0].merged + report.scopes[1].merged, 1);
    EXPECT_EQ(report.unread, 1);
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
    EXPECT_EQ(unread->readLevel, ReadLevel::None);
    EXPECT_EQ(unread->project, QStringLiteral("Potager"));
    const TopicPtr glimpsed = byLink.value(at("/short"));
    ASSERT_TRUE(glimpsed);
    EXPECT_EQ(glimpsed->interest, QStringLiteral("Rust"));
    EXPECT_EQ(glimpsed->origin, Origin::List);
    EXPECT_EQ(glimpsed->readLevel, ReadLevel::Meta);
    EXPECT_EQ(glimpsed->score, 7);
    EXPECT_EQ(preferences.settings().lastReport, report.last);
    EXPECT_EQ(preferences.settings().lastSearch, report.last.date);

    // The next run is told the links, and drops them when they come back all the same.
    const RunReport again = run();
    EXPECT_EQ(again.last.added, 0);
    EXPECT_EQ(again.scopes[0].known + again.scopes[1].known, 4);
    EXPECT_EQ(inbox().size(), 3);
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
    EXPECT_EQ(report.scopes[0].error, u"L’IA s’est arrêtée (code 3). le serveur est occupé\n")
        << report.scopes[0].error.toStdString();
}

TEST_F(SearchEngineTest, a_run_fails_when_every_scope_or_every_judgment_did) {
    QStringList failures;
    QObject::connect(&engine, &SearchEngine::failed,
                     [&](const QString &text) { failures += text; });
    scenario(QStringLiteral("\"prose\""), QStringLiteral("\"prose\""));
    EXPECT_THROW(run(), AgentError);
    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}), "fail");
    EXPECT_THROW(run(), AgentError);
    ASSERT_EQ(failures.size(), 2);
    EXPECT_EQ(failures[0], u"réponse du moteur illisible");
    EXPECT_TRUE(failures[1].contains(u"le serveur est occupé"));
    EXPECT_FALSE(preferences.settings().lastSearch) << "a failed run leaves the last date alone";

    write(QStringLiteral("home/.claude.json"), "{}");
    EXPECT_THROW(run(), AgentError);
    EXPECT_EQ(failures[2], u"Claude Code n’est plus connecté.");
    EXPECT_EQ(engine.phase(), SearchEngine::Phase::Idle);

    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}), "silent");
    write(QStringLiteral("home/.claude.json"), R"({"oauthAccount":{}})");
    EXPECT_EQ(run().unjudged, 1) << "a judge that answers for nobody is no failure";
}

TEST_F(SearchEngineTest, one_run_at_a_time) {
    scenario(QStringLiteral("[]"), list({candidate(at("/long"), "Rust")}));
    auto first = engine.run(stop.token());
    EXPECT_THROW(run(), RunRefused);
    EXPECT_EQ(test::waitFor(std::move(first), 60s).last.added, 1);
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
    EXPECT_EQ(report.last.added, 0);
    EXPECT_EQ(livingAgents(), 0);
}

} // namespace
} // namespace vorle
