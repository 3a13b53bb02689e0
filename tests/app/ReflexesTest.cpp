// `vorle reflexes`, run as a person runs it.

#include "core/Topic.h"
#include "tests/support/Wait.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using testing::HasSubstr;
using testing::Not;

class Reflexes : public testing::Test {
protected:
    void SetUp() override {
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
        QFile file(folder.filePath(QStringLiteral("topics.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(json::encode(topics, json::Style::Pretty));
        ASSERT_EQ(vorle("reglages interests [\"Rust\"]"), 0);
    }

    int vorle(const char *words) {
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("VORLE_STORE"),
                           folder.filePath(QStringLiteral("topics.json")));
        for (const char *variable :
             {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "VORLE_HOME"}) {
            environment.insert(QString::fromLatin1(variable), folder.path());
        }
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(VORLE_BINARIES "/vorle"),
                      QString::fromUtf8(words).split(u' '));
        test::spinUntil([&] { return process.state() == QProcess::NotRunning; });
        out = process.readAllStandardOutput();
        err = process.readAllStandardError().toStdString();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    QJsonArray listed() {
        EXPECT_EQ(vorle("reflexes --json"), 0);
        return QJsonDocument::fromJson(out).array();
    }

    QTemporaryDir folder;
    QByteArray out;
    std::string err;
};

TEST_F(Reflexes, reach_the_judge_until_they_are_switched_off) {
    const char *line = "They often set aside items of kind « video »";
    ASSERT_EQ(vorle("consignes"), 0) << err;
    EXPECT_THAT(out.toStdString(), HasSubstr(line));

    EXPECT_EQ(vorle("reflexes couper kind-vide"), 1) << "no such rule";
    EXPECT_EQ(vorle("reflexes couper kind-video"), 0);
    EXPECT_THAT(out.toStdString(), HasSubstr("Un réflexe coupé n’est plus appliqué"));
    EXPECT_EQ(vorle("consignes"), 0);
    EXPECT_THAT(out.toStdString(), Not(HasSubstr(line)));
    ASSERT_EQ(listed().size(), 1);
    EXPECT_FALSE(listed()[0].toObject()[u"enabled"].toBool(true));

    EXPECT_EQ(vorle("reflexes remettre kind-video"), 0);
    EXPECT_EQ(vorle("reflexes remettre kind-video"), 1) << "it is not off";
    EXPECT_TRUE(listed()[0].toObject()[u"enabled"].toBool());
}

TEST_F(Reflexes, are_forgotten_only_once_confirmed) {
    EXPECT_EQ(vorle("reflexes repartir"), 1);
    EXPECT_THAT(err, HasSubstr("le réflexe appris disparaît"));
    EXPECT_EQ(listed().size(), 1);
    EXPECT_EQ(vorle("reflexes repartir --oui"), 0);
    EXPECT_THAT(err, HasSubstr("tu en es à 0."));
    EXPECT_TRUE(listed().isEmpty());
    EXPECT_EQ(vorle("reflexes oublier"), 2);
}

} // namespace
} // namespace vorle
