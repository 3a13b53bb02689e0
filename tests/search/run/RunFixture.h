#pragma once

#include "core/Preferences.h"
#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"
#include "search/feeds/Feeds.h"
#include "search/run/SearchEngine.h"
#include "search/web/PageReader.h"
#include "search/web/SourceImage.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

namespace vorle::test {

inline QString candidate(const QString &url, const char *about, const char *title = "Un titre") {
    return QStringLiteral(R"({"title":"%1","url":"%2","kind":"article","about":"%3"})")
        .arg(QString::fromUtf8(title), url, QString::fromUtf8(about));
}

inline QString list(const QStringList &candidates) { return u'[' + candidates.join(u',') + u']'; }

/// A run on real collaborators: a child process for the agent, real HTTP, real files.
class RunFixture : public testing::Test {
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
        // Without a folder and a description nothing is asked for a project.
        QMap<QString, QString> descriptions;
        for (const char *name : {"A", "B", "Go Kart", "Potager", "Tiravue"}) {
            descriptions.insert(QString::fromUtf8(name), QStringLiteral("un essai"));
        }
        preferences.change(&Settings::projectDescriptions, descriptions);
        server.serve("/long", TestReply::page(page("long")));
        server.serve("/other", TestReply::page(page("other")));
        server.serve("/short", TestReply::page("<title>Court</title><p>peu"));
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

    RunReport run() { return waitFor(engine.run(stop.token()), std::chrono::seconds(60)); }

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
    TestServer server;
    Resources resources{QStringLiteral(VORLE_RESOURCES)};
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    TopicStore store{folder.filePath(QStringLiteral("topics.json")), resources, clock};
    HttpClient http{true};
    PageReader reader{http, std::chrono::seconds(5)};
    EngineAgent agent{environment(),
                      [] { return QString(); },
                      {std::chrono::seconds(4), std::chrono::seconds(4)}};
    Asker asker{agent, resources, std::chrono::milliseconds(10)};
    Feeds feeds{http, clock};
    SourceImage images{http,
                       {folder.filePath(QStringLiteral("pictures")), server.url({}).toString()}};
    ScoreProvenanceLog notes{store, clock};
    SearchEngine engine{{preferences, store, notes, asker, reader, feeds, images, clock}};
    CancelSource stop;
};

} // namespace vorle::test
