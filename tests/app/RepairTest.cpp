// What a person is told, and can do, when a file of theirs is damaged or the disk refuses: the
// program itself.

#include "tests/core/Samples.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::readFile;
using test::writeFile;
using testing::HasSubstr;

class Repair : public testing::Test {
protected:
    struct Outcome {
        int status = -1;
        QByteArray out;
        std::string err;
    };

    Repair() {
        environment.insert(QStringLiteral("VORLE_STORE"), topicsFile);
        environment.insert(QStringLiteral("VORLE_SETTINGS"), settingsFile);
        for (const char *variable :
             {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "VORLE_HOME"}) {
            environment.insert(QString::fromLatin1(variable), folder.path());
        }
    }

    /// Runs the command in a shell, after `before`.
    Outcome vorle(const QString &words, const QString &before = {}) const {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral("/bin/sh"),
                      {QStringLiteral("-c"),
                       before + QStringLiteral("exec " VORLE_BINARIES "/vorle ") + words});
        test::spinUntil([&] { return process.state() == QProcess::NotRunning; });
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput(), process.readAllStandardError().toStdString()};
    }
    QList<Topic> topics() const { return json::decode<QList<Topic>>(readFile(topicsFile)); }
    QStringList kept(const QString &name) const {
        return QDir(folder.path()).entryList({name + QStringLiteral(".illisible-*")});
    }

    QTemporaryDir folder;
    QString topicsFile = folder.filePath(QStringLiteral("sujets.json"));
    QString settingsFile = folder.filePath(QStringLiteral("reglages.json"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(Repair, takes_up_what_can_be_read_and_keeps_the_old_file) {
    QList<Topic> many;
    for (int i = 0; i < 40; ++i) {
        many.append(test::sampleTopic(QString::number(i)));
    }
    QByteArray damaged = json::encode(many, json::Style::Pretty);
    damaged.replace(damaged.indexOf("\"inbox\""), 7, "\"boxed\"");
    writeFile(topicsFile, damaged);

    const Outcome shown = vorle(QStringLiteral("sujets"));
    EXPECT_EQ(shown.status, 1);
    EXPECT_THAT(shown.err, HasSubstr("39 sujets lisibles sur 40"));
    EXPECT_THAT(shown.err, HasSubstr("vorle reparer"));
    EXPECT_EQ(readFile(topicsFile), damaged);

    const Outcome repaired = vorle(QStringLiteral("reparer --json"));
    EXPECT_EQ(repaired.status, 0) << repaired.err;
    EXPECT_THAT(repaired.err, HasSubstr("39 sujets repris sur 40."));
    const QStringList aside = kept(QStringLiteral("sujets.json"));
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(readFile(folder.filePath(aside[0])), damaged);
    EXPECT_EQ(QJsonDocument::fromJson(repaired.out).object(),
              (QJsonObject{{QStringLiteral("kept"), 39},
                           {QStringLiteral("left"), 1},
                           {QStringLiteral("aside"), folder.filePath(aside[0])}}));
    EXPECT_EQ(topics().size(), 39);

    const Outcome again = vorle(QStringLiteral("reparer"));
    EXPECT_EQ(again.status, 0);
    EXPECT_THAT(again.err, HasSubstr("rien à réparer"));
    writeFile(topicsFile, "?");
    const Outcome nothing = vorle(QStringLiteral("reparer"));
    EXPECT_EQ(nothing.status, 1);
    EXPECT_EQ(readFile(topicsFile), "?");
    writeFile(topicsFile, "");
    EXPECT_THAT(vorle(QStringLiteral("sujets")).err, HasSubstr("vide (0 octet)"));
}

TEST_F(Repair, tells_of_unreadable_settings_and_keeps_them) {
    writeFile(settingsFile, "{\"weeklyMinutes\":90,");
    EXPECT_THAT(vorle(QStringLiteral("programme")).err,
                HasSubstr("Tes réglages étaient illisibles"));
    EXPECT_EQ(readFile(settingsFile), "{\"weeklyMinutes\":90,");
    const Outcome changed = vorle(QStringLiteral("reglages weeklyMinutes 60"));
    EXPECT_EQ(changed.status, 0);
    EXPECT_THAT(changed.err, HasSubstr("Tes réglages étaient illisibles"));
    ASSERT_EQ(kept(QStringLiteral("reglages.json")).size(), 1);
    EXPECT_EQ(readFile(folder.filePath(kept(QStringLiteral("reglages.json"))[0])),
              "{\"weeklyMinutes\":90,");
    EXPECT_EQ(vorle(QStringLiteral("reglages")).err, "");
}

TEST_F(Repair, a_refusing_system_is_a_french_sentence_and_status_1) {
    writeFile(topicsFile, json::encode(QList<Topic>{test::sampleTopic(QStringLiteral("a"))}));
    const QByteArray healthy = readFile(topicsFile);
    const QString id = topics()[0].id.toString(QUuid::WithoutBraces);
    const struct {
        QString words;
        const char *before;
        const char *said;
    } cases[] = {
        {QStringLiteral("reglages weeklyMinutes 60"), "ulimit -f 0; ", "dépasse la taille permise"},
        {QStringLiteral("calibrer --passer"), "ulimit -f 0; ", "dépasse la taille permise"},
        {QStringLiteral("trier %1 garder").arg(id), "ulimit -f 0; ", "dépasse la taille permise"},
        {QStringLiteral("sujets"), "export VORLE_STORE=$(printf '/tmp/\\351t\\351/t.json'); ",
         "UTF-8"},
        {QStringLiteral("sujets"), "export VORLE_STORE=/dev/null; ", "pas un fichier ordinaire"},
        {QStringLiteral("reglages"), "truncate -s 200M $VORLE_SETTINGS; ",
         "dépasse la taille permise"},
    };
    for (const auto &[words, before, said] : cases) {
        const Outcome outcome = vorle(words, QString::fromUtf8(before));
        EXPECT_EQ(outcome.status, 1) << before << words.toStdString();
        EXPECT_THAT(outcome.err, HasSubstr(said)) << before << words.toStdString();
    }
    EXPECT_EQ(readFile(topicsFile), healthy);
    EXPECT_TRUE(QDir(folder.path()).entryList({QStringLiteral("*.vorle-*")}).isEmpty());
}

} // namespace
} // namespace vorle
