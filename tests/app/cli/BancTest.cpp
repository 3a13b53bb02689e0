// `vorle banc`, run as a person runs it.

#include "tests/support/Program.h"

#include <QDirIterator>
#include <QJsonArray>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;

TEST(Banc, measures_the_judge_and_leaves_the_topics_alone) {
    Program vorle;
    const Program::Outcome measured = vorle.run("banc --json");
    ASSERT_EQ(measured.status, 0) << measured.err;
    const QJsonObject shown = measured.object();
    const QJsonObject first = shown[u"benches"].toArray()[0].toObject();
    EXPECT_EQ(first[u"items"].toArray()[0][u"judgment"][u"relevance"].toDouble(), 7);
    EXPECT_EQ(first[u"figures"][u"compared"].toInt(), first[u"items"].toArray().size());
    EXPECT_GT(shown[u"figures"][u"meanAbsoluteError"].toDouble(), 0);
    EXPECT_FALSE(shown[u"figures"].toObject().contains(u"rankCorrelation")) << "always 7";
    EXPECT_GT(shown[u"costUSD"].toDouble(), 0);

    const Program::Outcome quick = vorle.run("banc --apercu");
    ASSERT_EQ(quick.status, 0) << quick.err;
    EXPECT_THAT(quick.err, HasSubstr("Aperçu du jugement v2"));
    EXPECT_THAT(quick.err, HasSubstr("10 sujets jugés · 0,50 $"));
    EXPECT_THAT(quick.out, HasSubstr("Les plus grands écarts"));

    QDirIterator files(vorle.path(), {QStringLiteral("*topics*")}, QDir::AllEntries,
                       QDirIterator::Subdirectories);
    EXPECT_FALSE(files.hasNext()) << files.next().toStdString();
}

TEST(Banc, tells_in_french_why_nothing_was_judged) {
    Program vorle;
    vorle.agent.answerBy(R"({"candidates":{},"judge":"silent"})");
    const Program::Outcome silent = vorle.run("banc");
    EXPECT_EQ(silent.status, 1);
    EXPECT_THAT(silent.err, HasSubstr("n’a jugé aucun sujet"));
    vorle.agent.signOut();
    const Program::Outcome refused = vorle.run("banc");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("Claude Code n’est plus connecté."));
    EXPECT_EQ(refused.out, "");
}

} // namespace
} // namespace vorle
