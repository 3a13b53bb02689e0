// `vorle banc`, run as a person runs it.

#include "tests/support/Wait.h"

#include <QDir>
#include <QDirIterator>
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

class Banc : public testing::Test {
protected:
    void SetUp() override {
        QDir(folder.path()).mkpath(QStringLiteral("home/.local/bin"));
        write("home/.local/bin/claude",
              "#!/bin/sh\nexec python3 " VORLE_SUPPORT "/stand-in-agent.py \"$@\"\n");
        QFile(folder.filePath(QStringLiteral("home/.local/bin/claude")))
            .setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        write("home/.claude.json", R"({"oauthAccount":{}})");
        write("home/scenario.json", R"({"candidates":{},"judge":"ok"})");
    }

    void write(const char *name, const QByteArray &bytes) const {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    int vorle(const QStringList &words) {
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *variable :
             {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "VORLE_HOME"}) {
            environment.insert(QString::fromLatin1(variable),
                               folder.filePath(QStringLiteral("home")));
        }
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(VORLE_BINARIES "/vorle"),
                      QStringList(QStringLiteral("banc")) + words);
        test::spinUntil([&] { return process.state() == QProcess::NotRunning; });
        out = process.readAllStandardOutput();
        err = process.readAllStandardError().toStdString();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    QTemporaryDir folder;
    QByteArray out;
    std::string err;
};

TEST_F(Banc, measures_the_judge_and_leaves_the_topics_alone) {
    ASSERT_EQ(vorle({QStringLiteral("--json")}), 0) << err;
    const QJsonObject shown = QJsonDocument::fromJson(out).object();
    const QJsonObject first = shown[u"benches"].toArray()[0].toObject();
    EXPECT_EQ(first[u"items"].toArray()[0][u"judgment"][u"relevance"].toDouble(), 7);
    EXPECT_EQ(first[u"figures"][u"compared"].toInt(), first[u"items"].toArray().size());
    EXPECT_GT(shown[u"figures"][u"meanAbsoluteError"].toDouble(), 0);
    EXPECT_FALSE(shown[u"figures"].toObject().contains(u"rankCorrelation")) << "always 7";
    EXPECT_GT(shown[u"costUSD"].toDouble(), 0);

    ASSERT_EQ(vorle({QStringLiteral("--apercu")}), 0) << err;
    EXPECT_THAT(err, HasSubstr("Aperçu du jugement v2"));
    EXPECT_THAT(err, HasSubstr("10 sujets jugés · 0,50 $"));
    EXPECT_THAT(out.toStdString(), HasSubstr("Les plus grands écarts"));

    QDirIterator files(folder.path(), {QStringLiteral("*topics*")}, QDir::AllEntries,
                       QDirIterator::Subdirectories);
    EXPECT_FALSE(files.hasNext()) << files.next().toStdString();
}

TEST_F(Banc, tells_in_french_why_nothing_was_judged) {
    write("home/scenario.json", R"({"candidates":{},"judge":"silent"})");
    EXPECT_EQ(vorle({}), 1);
    EXPECT_THAT(err, HasSubstr("n’a jugé aucun sujet"));
    write("home/.claude.json", "{}");
    EXPECT_EQ(vorle({}), 1);
    EXPECT_THAT(err, HasSubstr("Claude Code n’est plus connecté."));
    EXPECT_TRUE(out.isEmpty());
}

} // namespace
} // namespace vorle
