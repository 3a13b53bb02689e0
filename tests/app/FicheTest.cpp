// `vorle fiche`, run as a person runs it.

#include "tests/core/Samples.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QProcess>

#include <gmock/gmock.h>

#include <csignal>

namespace vorle {
namespace {

using testing::HasSubstr;
using testing::Not;

class FicheTest : public testing::Test {
protected:
    struct Outcome {
        int status = -1;
        std::string out;
        std::string err;
    };

    FicheTest() {
        QDir(folder.path()).mkpath(QStringLiteral("home/.local/bin"));
        QDir(folder.path()).mkpath(QStringLiteral("runtime"));
        const auto mine = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
        QFile(path("runtime")).setPermissions(mine);
        test::writeFile(path("home/.local/bin/claude"),
                        "#!/bin/sh\nexec python3 " VORLE_SUPPORT "/stand-in-agent.py \"$@\"\n");
        QFile(path("home/.local/bin/claude")).setPermissions(mine);
        test::writeFile(path("home/.claude.json"), R"({"oauthAccount":{}})");
        const std::pair<const char *, const char *> variables[] = {
            {"VORLE_STORE", "topics.json"}, {"VORLE_HOME", "home"},
            {"XDG_CONFIG_HOME", "config"},  {"XDG_DATA_HOME", "data"},
            {"XDG_RUNTIME_DIR", "runtime"},
        };
        for (const auto &[variable, name] : variables) {
            environment.insert(QString::fromLatin1(variable), path(name));
        }
        QList<Topic> list;
        for (const char *id :
             {"AB110000-0000-4000-8000-000000000001", "AB220000-0000-4000-8000-000000000002"}) {
            Topic topic = test::sampleTopic(QStringLiteral("Sujet"));
            topic.id = QUuid(QString::fromLatin1(id));
            topic.project = QStringLiteral("Tiravue");
            list += topic;
        }
        test::writeFile(path("topics.json"), json::encode(list));
    }

    QString path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }

    void agentSays(const QByteArray &brief) const {
        test::writeFile(path("home/scenario.json"), R"({"candidates":{},"brief":)" + brief + "}");
    }

    std::unique_ptr<QProcess> start(const QStringList &arguments) const {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment);
        process->start(QStringLiteral(VORLE_BINARIES "/vorle"),
                       QStringList{QStringLiteral("fiche")} + arguments);
        return process;
    }

    static Outcome end(QProcess &process) {
        test::spinUntil([&] { return process.state() == QProcess::NotRunning; });
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput().toStdString(),
                process.readAllStandardError().toStdString()};
    }

    Outcome fiche(const QStringList &arguments) const {
        const auto process = start(arguments);
        return end(*process);
    }

    qsizetype calls() const { return test::readFile(path("home/calls.log")).count("brief"); }
    QList<Topic> topics() const {
        return json::decode<QList<Topic>>(test::readFile(path("topics.json")));
    }

    QTemporaryDir folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(FicheTest, writes_a_note_once_keeps_it_and_shows_it) {
    agentSays(R"json({"essentials":[{"title":"La 7 sort","body":"Le 20 novembre."}],
        "details":[{"title":"Migrer","body":"En trois pas."}],"code":"if (a)\n    b ? c : d;",
        "forProject":"Rien ne presse.","unclear":["La date du correctif."],"minutes":4,
        "sources":[{"title":"Notes","url":"https://example.org/7","adds":"Les \u001b[31mdates."}]})json");
    const Outcome first = fiche({QStringLiteral("ab11")});
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_THAT(first.err, HasSubstr("J’écris la fiche de lecture…"));
    for (const char *shown :
         {"Fiche de lecture · Sujet", "4\u00A0min de lecture", "La 7 sort", "En trois pas.",
          "    if (a)\n        b ? c : d;", "Pour Tiravue", "Ce qui reste flou",
          "· La date du correctif.", "https://example.org/7"}) {
        EXPECT_THAT(first.out, HasSubstr(shown));
    }
    EXPECT_THAT(first.out, Not(HasSubstr("\033")));
    ASSERT_TRUE(topics()[0].brief);
    EXPECT_FALSE(topics()[1].brief);

    agentSays(R"("fail")");
    const Outcome kept = fiche({QStringLiteral("AB11"), QStringLiteral("--json")});
    EXPECT_EQ(kept.status, 0);
    EXPECT_EQ(json::decode<Brief>(QByteArray::fromStdString(kept.out)), topics()[0].brief);
    EXPECT_EQ(calls(), 1) << "a kept note costs nothing";

    agentSays(R"json({"essentials":[{"title":"La 8 sort","body":""}],"details":[],"unclear":[],
                      "sources":[],"minutes":1})json");
    EXPECT_THAT(fiche({QStringLiteral("ab11"), QStringLiteral("--refaire")}).out,
                HasSubstr("La 8 sort"));
}

TEST_F(FicheTest, failures_say_what_happened_and_change_nothing) {
    const QByteArray before = test::readFile(path("topics.json"));
    agentSays(R"({"essentials":[],"details":[],"unclear":[],"sources":[],"minutes":1})");
    const Outcome empty = fiche({QStringLiteral("ab11")});
    EXPECT_EQ(empty.status, 1);
    EXPECT_TRUE(empty.out.empty());
    EXPECT_THAT(empty.err, HasSubstr("Je n’ai pas pu écrire la fiche.\nLes sources n’ont pas "
                                     "répondu, ou ton IA non plus.\nréponse du moteur illisible"));
    EXPECT_EQ(fiche({QStringLiteral("ab")}).status, 1);
    EXPECT_EQ(fiche({QStringLiteral("ef")}).status, 1);
    EXPECT_EQ(fiche({}).status, 2);
    EXPECT_EQ(calls(), 1);
    EXPECT_EQ(test::readFile(path("topics.json")), before);
}

TEST_F(FicheTest, an_interrupt_ends_the_agent) {
    agentSays(R"("hang")");
    const auto running = start({QStringLiteral("ab11")});
    test::spinUntil([&] { return calls() == 1; });
    const QByteArray agent = test::readFile(path("home/calls.log")).trimmed().split(' ').last();
    kill(pid_t(running->processId()), SIGINT);
    const Outcome stopped = end(*running);
    EXPECT_EQ(stopped.status, 1);
    EXPECT_THAT(stopped.err, HasSubstr("Arrêté."));
    EXPECT_NE(kill(pid_t(agent.toInt()), 0), 0);
}

} // namespace
} // namespace vorle
