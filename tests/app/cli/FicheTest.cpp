// `vorle fiche`, run as a person runs it.

#include "tests/app/cli/TwoTopics.h"
#include "tests/support/Wait.h"

#include <gmock/gmock.h>

#include <csignal>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;
using testing::Not;

class FicheTest : public test::TwoTopics {
protected:
    FicheTest() {
        QList<Topic> list = vorle.topics();
        list[0].project = QStringLiteral("Tiravue");
        vorle.save(list);
    }

    void agentSays(const QByteArray &brief) const {
        vorle.agent.answerBy(R"({"candidates":{},"brief":)" + brief + "}");
    }
    qsizetype calls() const { return vorle.agent.calls(u"brief"); }
};

TEST_F(FicheTest, writes_a_note_once_keeps_it_and_shows_it) {
    agentSays(R"json({"essentials":[{"title":"La 7 sort","body":"Le 20 novembre."}],
        "details":[{"title":"Migrer","body":"En trois pas."}],"code":"if (a)\n    b ? c : d;",
        "forProject":"Rien ne presse.","unclear":["La date du correctif."],"minutes":4,
        "sources":[{"title":"Notes","url":"https://example.org/7","adds":"Les \u001b[31mdates."}]})json");
    const Program::Outcome first = vorle.run("fiche ab11");
    ASSERT_EQ(first.status, 0) << first.err;
    EXPECT_THAT(first.err, HasSubstr("J’écris la fiche de lecture…"));
    for (const char *shown :
         {"Fiche de lecture · AB11", "4\u00A0min de lecture", "La 7 sort", "En trois pas.",
          "    if (a)\n        b ? c : d;", "Pour Tiravue", "Ce qui reste flou",
          "· La date du correctif.", "https://example.org/7"}) {
        EXPECT_THAT(first.out, HasSubstr(shown));
    }
    EXPECT_THAT(first.out, Not(HasSubstr("\033")));
    ASSERT_TRUE(vorle.topics()[0].brief);
    EXPECT_FALSE(vorle.topics()[1].brief);

    agentSays(R"("fail")");
    const Program::Outcome kept = vorle.run("fiche AB11 --json");
    EXPECT_EQ(kept.status, 0);
    EXPECT_EQ(json::decode<Brief>(kept.bytes()), vorle.topics()[0].brief);
    EXPECT_EQ(calls(), 1) << "a kept note costs nothing";

    agentSays(R"json({"essentials":[{"title":"La 8 sort","body":""}],"details":[],"unclear":[],
                      "sources":[],"minutes":1})json");
    EXPECT_THAT(vorle.run("fiche ab11 --refaire").out, HasSubstr("La 8 sort"));
}

TEST_F(FicheTest, failures_say_what_happened_and_change_nothing) {
    const QByteArray before = test::readFile(vorle.topicsFile());
    agentSays(R"({"essentials":[],"details":[],"unclear":[],"sources":[],"minutes":1})");
    const Program::Outcome empty = vorle.run("fiche ab11");
    EXPECT_EQ(empty.status, 1);
    EXPECT_TRUE(empty.out.empty());
    EXPECT_THAT(empty.err, HasSubstr("Je n’ai pas pu écrire la fiche.\nLes sources n’ont pas "
                                     "répondu, ou ton IA non plus.\nréponse du moteur illisible"));
    EXPECT_EQ(vorle.run("fiche ab").status, 1);
    EXPECT_EQ(vorle.run("fiche ef").status, 1);
    EXPECT_EQ(vorle.run("fiche").status, 2);
    EXPECT_EQ(calls(), 1);
    EXPECT_EQ(test::readFile(vorle.topicsFile()), before);
}

TEST_F(FicheTest, an_interrupt_ends_the_agent) {
    agentSays(R"("hang")");
    QProcess &running = vorle.start("fiche ab11");
    test::spinUntil([&] { return calls() == 1; });
    const qint64 agent = vorle.agent.calls().first().process;
    kill(pid_t(running.processId()), SIGINT);
    const Program::Outcome stopped = Program::end(running);
    EXPECT_EQ(stopped.status, 1);
    EXPECT_THAT(stopped.err, HasSubstr("Arrêté."));
    EXPECT_NE(kill(pid_t(agent), 0), 0);
}

} // namespace
} // namespace vorle
