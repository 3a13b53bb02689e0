// What a person is told, and can do, when a file of theirs is damaged or the disk refuses: the
// program itself.

#include "tests/core/Samples.h"
#include "tests/support/Program.h"

#include <QDir>
#include <QDirIterator>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::Program;
using test::readFile;
using test::writeFile;
using testing::HasSubstr;

class Repair : public testing::Test {
protected:
    /// Runs the command in a shell, after `before`.
    Program::Outcome run(const QString &words, const QString &before = {}) {
        QProcess &process = vorle.command({});
        const QString program = process.program();
        process.start(
            QStringLiteral("/bin/sh"),
            {QStringLiteral("-c"), before + QStringLiteral("exec ") + program + u' ' + words});
        return Program::end(process);
    }
    Program::Outcome run(const char *words) { return vorle.run(words); }
    /// What was kept aside of the file.
    static QStringList kept(const QString &file) {
        const QFileInfo info(file);
        QStringList paths;
        for (const QFileInfo &aside :
             info.dir().entryInfoList({info.fileName() + QStringLiteral(".illisible-*")})) {
            paths += aside.filePath();
        }
        return paths;
    }

    Program vorle;
};

TEST_F(Repair, takes_up_what_can_be_read_and_keeps_the_old_file) {
    QList<Topic> many;
    for (int i = 0; i < 40; ++i) {
        many.append(test::sampleTopic(QString::number(i)));
    }
    QByteArray damaged = json::encode(many, json::Style::Pretty);
    damaged.replace(damaged.indexOf("\"inbox\""), 7, "\"boxed\"");
    writeFile(vorle.topicsFile(), damaged);

    const Program::Outcome shown = run("sujets");
    EXPECT_EQ(shown.status, 1);
    EXPECT_THAT(shown.err, HasSubstr("39 sujets lisibles sur 40"));
    EXPECT_THAT(shown.err, HasSubstr("vorle reparer"));
    EXPECT_EQ(readFile(vorle.topicsFile()), damaged);

    const Program::Outcome repaired = run("reparer --json");
    EXPECT_EQ(repaired.status, 0) << repaired.err;
    EXPECT_THAT(repaired.err, HasSubstr("39 sujets repris sur 40."));
    const QStringList aside = kept(vorle.topicsFile());
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(readFile(aside[0]), damaged);
    EXPECT_EQ(repaired.object(), (QJsonObject{{QStringLiteral("kept"), 39},
                                              {QStringLiteral("left"), 1},
                                              {QStringLiteral("aside"), aside[0]}}));
    EXPECT_EQ(vorle.topics().size(), 39);

    const Program::Outcome again = run("reparer");
    EXPECT_EQ(again.status, 0);
    EXPECT_THAT(again.err, HasSubstr("rien à réparer"));
    writeFile(vorle.topicsFile(), "?");
    const Program::Outcome nothing = run("reparer");
    EXPECT_EQ(nothing.status, 1);
    EXPECT_EQ(readFile(vorle.topicsFile()), "?");
    writeFile(vorle.topicsFile(), "");
    EXPECT_THAT(run("sujets").err, HasSubstr("vide (0 octet)"));
}

TEST_F(Repair, tells_of_unreadable_settings_and_keeps_them) {
    writeFile(vorle.settingsFile(), "{\"weeklyMinutes\":90,");
    EXPECT_THAT(run("programme").err, HasSubstr("Tes réglages étaient illisibles"));
    EXPECT_EQ(readFile(vorle.settingsFile()), "{\"weeklyMinutes\":90,");
    const Program::Outcome changed = run("reglages weeklyMinutes 60");
    EXPECT_EQ(changed.status, 0);
    EXPECT_THAT(changed.err, HasSubstr("Tes réglages étaient illisibles"));
    ASSERT_EQ(kept(vorle.settingsFile()).size(), 1);
    EXPECT_EQ(readFile(kept(vorle.settingsFile())[0]), "{\"weeklyMinutes\":90,");
    EXPECT_EQ(run("reglages").err, "");
}

TEST_F(Repair, a_refusing_system_is_a_french_sentence_and_status_1) {
    writeFile(vorle.topicsFile(),
              json::encode(QList<Topic>{test::sampleTopic(QStringLiteral("a"))}));
    QDir(vorle.path()).mkpath(QStringLiteral("config/vorle"));
    const QByteArray healthy = readFile(vorle.topicsFile());
    const QString id = vorle.topics()[0].id.toString(QUuid::WithoutBraces);
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
        const Program::Outcome outcome = run(words, QString::fromUtf8(before));
        EXPECT_EQ(outcome.status, 1) << before << words.toStdString();
        EXPECT_THAT(outcome.err, HasSubstr(said)) << before << words.toStdString();
    }
    EXPECT_EQ(readFile(vorle.topicsFile()), healthy);
    QDirIterator left(vorle.path(), {QStringLiteral("*.vorle-*")}, QDir::AllEntries,
                      QDirIterator::Subdirectories);
    EXPECT_FALSE(left.hasNext()) << left.next().toStdString();
}

} // namespace
} // namespace vorle
