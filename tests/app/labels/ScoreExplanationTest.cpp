#include "app/labels/ScoreExplanation.h"

#include "tests/core/Samples.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(ScoreExplanationTest, tells_what_is_known_and_leaves_out_the_rest) {
    Topic topic = test::sampleTopic(QStringLiteral("a"));
    const auto fact = [](const ScoreExplanation &open, QStringView label) {
        for (const ScoreExplanation::Fact &one : open.facts) {
            if (one.label == label) {
                return QString(one.text).replace(QChar(QChar::Nbsp), u' ');
            }
        }
        return QString();
    };
    const QDate today(2026, 11, 3);
    const ScoreExplanation bare = openScore(topic, std::nullopt, today);
    EXPECT_EQ(bare.title, QStringLiteral("Note 7 sur 10"));
    EXPECT_TRUE(bare.grades.isEmpty());
    EXPECT_EQ(bare.facts.size(), 1) << "the effort alone is known";

    topic.criteria = Judgment::Criteria{8, 6, 4, 9, 20};
    topic.readLevel = ReadLevel::Full;
    topic.urgency =
        Judgment::Urgency{Judgment::Urgency::Level::Before, QStringLiteral("2026-11-28"),
                          QStringLiteral("fin du support")};
    topic.correction = Correction{9,
                                  {QStringLiteral("plus important que ça")},
                                  QStringLiteral("lu %1"),
                                  QDateTime(today, QTime(9, 0), Qt::UTC)};
    ScoreProvenance provenance;
    provenance.at = QDateTime(QDate(2026, 11, 1), QTime(23, 30), Qt::UTC);
    provenance.agent = QStringLiteral("codex");
    provenance.relevance = 7.46;
    provenance.bytesRead = 5432;
    provenance.examples = 12;
    provenance.reflexes = {{QStringLiteral("stack-first"), QStringLiteral("La stack passe avant.")},
                           {QStringLiteral("kind-video"), QString()}};
    const ScoreExplanation open = openScore(topic, provenance, today, QTimeZone("Europe/Paris"));
    EXPECT_EQ(open.title, QStringLiteral("Note 9 sur 10, la tienne. J’avais mis 7"));
    ASSERT_EQ(open.grades.size(), 4);
    EXPECT_EQ(open.grades[3], (ScoreExplanation::Grade{QStringLiteral("Fiabilité"), 9}));
    EXPECT_EQ(fact(open, u"Urgence"), QStringLiteral("Avant le 28 novembre. Fin du support"));
    EXPECT_EQ(fact(open, u"Lecture"), QStringLiteral("lu en entier, 5,4 ko de texte"));
    EXPECT_EQ(fact(open, u"Avant arrondi"), QStringLiteral("7,46, arrondi à 7"));
    EXPECT_EQ(fact(open, u"Jugé par"), QStringLiteral("Codex, le 2 novembre"));
    EXPECT_EQ(fact(open, u"Réflexes"), QStringLiteral("La stack passe avant. kind-video"));
    EXPECT_EQ(fact(open, u"Exemples"), QStringLiteral("12 de tes tris"));
    EXPECT_EQ(
        fact(open, u"Ta correction"),
        QStringLiteral("9 sur 10, le 3 novembre · plus important que ça · «\u202Flu %1\u202F»"));

    topic.readLevel = ReadLevel::None;
    topic.correction.reset();
    EXPECT_EQ(openScore(topic, provenance, today).title,
              QStringLiteral("Pas de note : rien n’a pu être lu"));
}

} // namespace
} // namespace vorle
