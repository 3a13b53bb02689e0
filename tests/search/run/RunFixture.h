#pragma once

#include "tests/search/run/RunParts.h"

#include <gtest/gtest.h>

namespace vorle::test {

inline QString candidate(const QString &url, const char *about, const char *title = "Un titre") {
    return QStringLiteral(R"({"title":"%1","url":"%2","kind":"article","about":"%3"})")
        .arg(QString::fromUtf8(title), url, QString::fromUtf8(about));
}

inline QString list(const QStringList &candidates) { return u'[' + candidates.join(u',') + u']'; }

/// A run whose agent is signed in and answers by a table, for two topics to follow and a project.
class RunFixture : public testing::Test, protected RunParts {
protected:
    RunFixture() : RunParts(clock) {
        claude.signIn();
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

    void write(const QString &name, const QByteArray &bytes) const {
        writeFile(folder.filePath(name), bytes);
    }

    /// What each scope answers, and what the judge does.
    void scenario(const QString &project, const QString &topics, const char *judge = "ok",
                  double seconds = 0) const {
        claude.answerBy(
            QStringLiteral(R"({"candidates":{"came back empty on":%5,"trusts, for their":%6,)"
                           R"(%8"**Potager**":%1,"Topics the person":%2},%9)"
                           R"("judge":"%3","seconds":%4,"dig":%7})")
                .arg(project, topics, QString::fromUtf8(judge), QString::number(seconds),
                     secondAnswer, sitesAnswer, dugPages, otherScopes, otherTraits)
                .toUtf8());
    }

    QString at(const char *path) const { return server.link(path); }
    RunReport run() { return waitFor(engine.run(stop.token()), std::chrono::seconds(60)); }
    QList<TopicPtr> inbox() const { return store.topics(TopicStatus::Inbox); }

    // What the agent answers to the second search, to the screening of feeds and to digging.
    QString secondAnswer = QStringLiteral("[]");
    QString sitesAnswer = QStringLiteral("[]");
    QString dugPages = QStringLiteral("{}");
    QString otherScopes; ///< "**Autre**":[…], with a comma behind each
    QString otherTraits; ///< further members of the table, likewise
    static inline const SystemClock clock;
    CancelSource stop;
};

} // namespace vorle::test
