// `vorle reflexes`, run as a person runs it.

#include "tests/support/Program.h"

#include <QJsonArray>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;
using testing::Not;

class Reflexes : public testing::Test {
protected:
    Reflexes() {
        QList<Topic> topics;
        for (int i = 0; i < 12; ++i) {
            Topic topic;
            topic.id = QUuid::createUuid();
            topic.title = QStringLiteral("Un titre");
            topic.kind = QStringLiteral("video");
            topic.status = TopicStatus::Dismissed;
            topic.foundAt = QDateTime(QDate(2026, 10, 1), QTime(8, 0), Qt::UTC);
            topic.triagedAt = topic.foundAt;
            topics += topic;
        }
        vorle.save(topics);
        EXPECT_EQ(vorle.run("reglages interests [\"Rust\"]").status, 0);
    }

    QJsonArray listed() {
        const Program::Outcome outcome = vorle.run("reflexes --json");
        EXPECT_EQ(outcome.status, 0);
        return outcome.list();
    }

    Program vorle;
};

TEST_F(Reflexes, reach_the_judge_until_they_are_switched_off) {
    const char *line = "They often set aside items of kind « video »";
    EXPECT_THAT(vorle.run("consignes").out, HasSubstr(line));

    EXPECT_EQ(vorle.run("reflexes couper kind-vide").status, 1) << "no such rule";
    EXPECT_THAT(vorle.run("reflexes couper kind-video").out,
                HasSubstr("Un réflexe coupé n’est plus appliqué"));
    EXPECT_THAT(vorle.run("consignes").out, Not(HasSubstr(line)));
    ASSERT_EQ(listed().size(), 1);
    EXPECT_FALSE(listed()[0].toObject()[u"enabled"].toBool(true));

    EXPECT_EQ(vorle.run("reflexes remettre kind-video").status, 0);
    EXPECT_EQ(vorle.run("reflexes remettre kind-video").status, 1) << "it is not off";
    EXPECT_TRUE(listed()[0].toObject()[u"enabled"].toBool());
}

TEST_F(Reflexes, are_forgotten_only_once_confirmed) {
    const Program::Outcome asked = vorle.run("reflexes repartir");
    EXPECT_EQ(asked.status, 1);
    EXPECT_THAT(asked.err, HasSubstr("le réflexe appris disparaît"));
    EXPECT_EQ(listed().size(), 1);
    const Program::Outcome forgotten = vorle.run("reflexes repartir --oui");
    EXPECT_EQ(forgotten.status, 0);
    EXPECT_THAT(forgotten.err, HasSubstr("tu en es à 0."));
    EXPECT_TRUE(listed().isEmpty());
    EXPECT_EQ(vorle.run("reflexes oublier").status, 2);
}

TEST_F(Reflexes, show_the_decisions_they_rest_on) {
    const Program::Outcome shown = vorle.run("reflexes montrer kind-video --json");
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.list().size(), 12);
    EXPECT_THAT(vorle.run("reflexes montrer kind-video").out, HasSubstr("Un titre"));
    EXPECT_EQ(vorle.run("reflexes montrer kind-vide").status, 1);
}

} // namespace
} // namespace vorle
