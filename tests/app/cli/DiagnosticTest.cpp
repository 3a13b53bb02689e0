// `vorle diagnostic`, run as a person runs it, over files that hold what must never leave in it.

#include "core/RunReport.h"
#include "tests/core/Samples.h"
#include "tests/support/Program.h"

#include <QFile>
#include <QJsonArray>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;
using testing::Not;

constexpr const char *secrets[] = {"Tiravue",        "secret.example", "Courgettes",
                                   "luthière",       "sk-ant-api03",   "Juge cette page",
                                   "le texte lu",    "Potager",        "Figma",
                                   "ghp_aaaaaaaaaa", "ma note à moi",  "jamais de jeux"};

void plant(const Program &vorle) {
    Topic topic = test::sampleTopic(QStringLiteral("Courgettes et Tiravue"));
    topic.sources = {{QStringLiteral("le texte lu"), QStringLiteral("https://secret.example/a")}};
    topic.note = QStringLiteral("ma note à moi");
    topic.seenText = QByteArray("le texte lu sur la page");
    topic.project = QStringLiteral("Tiravue");
    vorle.save({topic});
    vorle.write("config/vorle/settings.json", R"({"job":"luthière","interests":["Courgettes"],
        "projects":{"Tiravue":"/home/marie/Tiravue","Potager":"/home/marie/Potager"},
        "prioritySites":[{"address":"secret.example"}],"keptApps":["Figma"],
        "exclusions":["jamais de jeux"],"agentModel":"opus",
        "lastSearch":"2026-11-09T08:04:00Z"})");
    RunReport report;
    report.date = QDateTime(QDate(2026, 11, 9), QTime(8, 4), Qt::UTC);
    report.uncovered = {QStringLiteral("Courgettes")};
    ScopeReport scope;
    scope.name = QStringLiteral("Potager");
    scope.error = QStringLiteral("L’IA s’est arrêtée (code 1). Juge cette page : "
                                 "https://secret.example sk-ant-api03");
    report.scopes = {scope};
    report.failed = QStringLiteral("API Error: 529 for Tiravue ghp_aaaaaaaaaa");
    report.warnings = {QStringLiteral("Courgettes")};
    report.unjudged = {{QStringLiteral("Courgettes"), QStringLiteral("https://secret.example"),
                        QStringLiteral("Potager")}};
    vorle.write("data/vorle/runs.json", json::encode(QList<RunReport>{report}));
}

TEST(Diagnostic, tells_what_helps_and_nothing_of_what_is_watched) {
    Program vorle;
    plant(vorle);
    vorle.environment.insert(QStringLiteral("VORLE_AGENT"), QStringLiteral("claude"));
    const Program::Outcome told = vorle.run("diagnostic");
    ASSERT_EQ(told.status, 0) << told.err;
    const Program::Outcome json = vorle.run("diagnostic --json");
    ASSERT_EQ(json.status, 0) << json.err;
    for (const char *secret : secrets) {
        EXPECT_THAT(told.out, Not(HasSubstr(secret)));
        EXPECT_THAT(json.out, Not(HasSubstr(secret)));
    }
    for (const char *fact : {"topics.json", "settings.json", "run-left.json", "found-again.json",
                             "à trier 1", "claude (choisi)", "opus", "chaque lundi à 8:00",
                             "api error, 529", "L’IA s’est arrêtée (code 1)", "VORLE_AGENT"}) {
        EXPECT_THAT(told.out, HasSubstr(fact));
    }
    for (const char *english : {"mon 8", "inbox", "dismissed"}) {
        EXPECT_THAT(told.out, Not(HasSubstr(english))) << "it is read by who sends it, too";
    }
    const QJsonObject shown = json.object();
    EXPECT_EQ(shown[u"schedule"].toString(), QStringLiteral("mon 8:00"));
    ASSERT_EQ(shown[u"runs"].toArray().size(), 1);
    EXPECT_EQ(shown[u"runs"].toArray()[0][u"scopes"].toArray()[0].toString(),
              QStringLiteral("L’IA s’est arrêtée (code 1)."));
    EXPECT_EQ(shown[u"agents"].toArray()[0][u"state"].toString(), QStringLiteral("ready"));
    EXPECT_EQ(vorle.agent.calls().size(), 0) << "no agent is started";
}

TEST(Diagnostic, comes_whatever_state_the_files_are_in) {
    Program vorle;
    vorle.write("config/vorle/settings.json", "{ Tiravue");
    vorle.write("data/vorle/topics.json", "[ Courgettes");
    const Program::Outcome damaged = vorle.run("diagnostic");
    EXPECT_EQ(damaged.status, 0) << damaged.err;
    EXPECT_THAT(damaged.out, HasSubstr("fichier illisible"));
    EXPECT_THAT(damaged.out, HasSubstr("le fichier des réglages ne se lit pas comme tel"));
    EXPECT_THAT(damaged.out, Not(HasSubstr("Courgettes")));
    EXPECT_EQ(vorle.read("data/vorle/topics.json"), "[ Courgettes");
    // A topics file that is none.
    QFile::remove(vorle.topicsFile());
    ASSERT_TRUE(QDir().mkdir(vorle.topicsFile()));
    const Program::Outcome refused = vorle.run("diagnostic --json");
    EXPECT_EQ(refused.status, 0) << refused.err;
    EXPECT_FALSE(refused.object()[u"problems"].toArray().isEmpty()) << refused.out;
}

} // namespace
} // namespace vorle
