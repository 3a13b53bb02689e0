// The program itself, run as a person runs it: arguments, standard streams, exit status, files.

#include "tests/support/Program.h"
#include "tests/support/TestServer.h"

#include <QDir>
#include <QJsonArray>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;

class CommandLineTest : public testing::Test {
protected:
    Program vorle;
    test::TestServer server;
};

TEST_F(CommandLineTest, wrong_usage_and_refusals_are_told_in_french_and_change_nothing) {
    const struct {
        const char *words;
        int status;
        const char *text;
    } cases[] = {
        {"fouiller", 2, "Commande inconnue : fouiller"},
        {"sujets --statu", 2, "Option inconnue"},
        {"sujets --statut", 2, "attend une valeur"},
        {"sujets --statut=perdu", 2, "Statut inconnu"},
        {"lire", 2, "Usage : vorle lire URL"},
        {"lire ftp://x", 1, "n’est pas une adresse web"},
        {"projet oublier x", 2, "Usage"},
        {"projet ajouter /nulle/part", 1, "introuvable"},
        {"projet retirer x", 1, "Aucun"},
        {"reglages couleur", 1, "inconnu"},
        {"reglages appearance Sombre", 2, "n’est pas du JSON"},
        {"reglages weeklyMinutes \"3\"", 1, "weeklyMinutes"},
        {"fouille", 1, "Rien à fouiller : ajoute un dossier de projet"},
        {"consignes", 1, "Rien à fouiller : ajoute un dossier de projet"},
    };
    for (const auto &one : cases) {
        const Program::Outcome outcome = vorle.run(one.words);
        EXPECT_EQ(outcome.status, one.status) << one.words;
        EXPECT_THAT(outcome.err, HasSubstr(one.text));
        EXPECT_TRUE(outcome.out.empty());
    }
    EXPECT_FALSE(QFile::exists(vorle.settingsFile()));
    EXPECT_TRUE(vorle.agent.calls().isEmpty());
}

TEST_F(CommandLineTest, help_comes_whatever_state_the_machine_is_in) {
    for (const char *name : {"HOME", "TMPDIR", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                             "XDG_RUNTIME_DIR", "VORLE_HOME", "VORLE_STORE", "VORLE_SETTINGS"}) {
        vorle.environment.insert(QString::fromLatin1(name), QStringLiteral("/dev/null/nowhere"));
    }
    for (const char *call : {"--help", "aide", "fouille --help"}) {
        const Program::Outcome help = vorle.run(call);
        EXPECT_EQ(help.status, 0) << help.err;
        EXPECT_THAT(help.out, HasSubstr("Usage : vorle"));
    }
    const Program::Outcome refused = vorle.run("sujets");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("Je ne peux pas démarrer. Le système a "));
}

TEST_F(CommandLineTest, a_result_that_could_not_be_written_is_a_failure) {
    if (!QFile::exists(QStringLiteral("/dev/full"))) {
        GTEST_SKIP() << "Linux alone has a device that is always full";
    }
    for (const char *command : {"aide", "reglages", "agents"}) {
        QProcess &process = vorle.command({QString::fromLatin1(command)});
        process.setStandardOutputFile(QStringLiteral("/dev/full"));
        process.start();
        const Program::Outcome outcome = Program::end(process);
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_THAT(outcome.err, HasSubstr("n’a pas pu être écrit en entier"));
    }
}

TEST_F(CommandLineTest, a_relative_folder_in_the_environment_is_none) {
    vorle.environment.insert(QStringLiteral("HOME"), vorle.path("home"));
    vorle.environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QStringLiteral("ici"));
    vorle.environment.remove(QStringLiteral("VORLE_SETTINGS"));
    ASSERT_EQ(vorle.run("reglages weeklyMinutes 60").status, 0);
    EXPECT_TRUE(QFile::exists(vorle.path("home/.config/vorle/settings.json")));
    EXPECT_FALSE(QFile::exists(QStringLiteral("ici")));
}

TEST_F(CommandLineTest, projects_and_settings_are_kept_and_shape_the_prompts) {
    vorle.write(
        "Mon projet/package.json",
        R"({"dependencies":{"next":"16","react":"19"},"devDependencies":{"typescript":"5"}})");
    const Program::Outcome added =
        vorle.run({QStringLiteral("projet"), QStringLiteral("ajouter"), vorle.path("Mon projet"),
                   QStringLiteral("--nom"), QStringLiteral("Tiravue"),
                   QStringLiteral("--description=un carnet"), QStringLiteral("--json")});
    const QJsonObject project = added.list().first().toObject();
    EXPECT_EQ(project[u"name"].toString(), u"Tiravue");
    EXPECT_EQ(project[u"dependencies"].toInt(), 3);
    EXPECT_EQ(project[u"labels"].toArray().size(), 3);

    const Program::Outcome prompts = vorle.run("consignes --json");
    const QJsonArray shown = prompts.list();
    ASSERT_EQ(shown.size(), 3);
    EXPECT_EQ(shown[0].toObject()[u"scope"].toString(), u"Tiravue");
    const QString prompt = shown[0].toObject()[u"prompt"].toString();
    EXPECT_TRUE(prompt.contains(u"Project watched: **Tiravue**, un carnet. Its dependency file"));
    for (const QStringView word :
         {u"@TODAY", u"@SINCE", u"@SCOPE", u"@COUNT", u"@RADIUS", u"@KNOWN"}) {
        EXPECT_FALSE(prompt.contains(word));
    }
    EXPECT_TRUE(shown[1].toObject()[u"prompt"].toString().contains(u"- Tiravue: un carnet ["));
    EXPECT_TRUE(vorle.agent.calls().isEmpty()) << "nothing is sent";

    EXPECT_EQ(vorle.run("projet retirer Tiravue").status, 0);
    EXPECT_EQ(vorle.run("projet --json").out, "[]\n");
}

TEST_F(CommandLineTest, reading_a_link_the_person_typed_may_reach_this_machine) {
    server.serve("/a", test::TestReply::page("<title>Ici</title><article>" +
                                             QByteArray("mot ").repeated(300) + "</article>"));
    const Program::Outcome read =
        vorle.run({QStringLiteral("lire"), server.link("/a"), QStringLiteral("--json")});
    EXPECT_EQ(read.status, 0);
    const QJsonObject page = read.object();
    EXPECT_EQ(page[u"title"].toString(), u"Ici");
    EXPECT_EQ(page[u"level"].toString(), u"full");

    server.serve("/empty", test::TestReply::page("<p></p>"));
    const std::pair<QString, const char *> unread[] = {
        {server.link("/b"), "pas lu · le site a répondu 404"},
        {server.link("/empty"), "aucun texte"},
        {QStringLiteral("http://127.0.0.1:1/"), "injoignable"},
    };
    for (const auto &[link, reason] : unread) {
        const Program::Outcome outcome = vorle.run({QStringLiteral("lire"), link});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err, HasSubstr(reason));
    }
}

TEST_F(CommandLineTest, a_setting_that_cannot_be_kept_is_a_failure) {
    vorle.write("config", "a file where the folder should be");
    QDir(vorle.path()).mkdir(QStringLiteral("projet"));
    const QStringList calls[] = {
        {QStringLiteral("reglages"), QStringLiteral("weeklyMinutes"), QStringLiteral("60")},
        {QStringLiteral("projet"), QStringLiteral("ajouter"), vorle.path("projet")},
    };
    for (const QStringList &call : calls) {
        const Program::Outcome outcome = vorle.run(call);
        EXPECT_EQ(outcome.status, 1) << call.join(u' ').toStdString();
        EXPECT_THAT(outcome.err, HasSubstr("n’a pas pu être enregistré dans"));
        EXPECT_TRUE(outcome.out.empty());
    }
    QFile::remove(vorle.path("config"));
    QDir(vorle.path()).mkpath(QStringLiteral("config/vorle/settings.json"));
    const Program::Outcome refused = vorle.run("reglages");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("un dossier se trouve à la place du fichier"));
}

TEST_F(CommandLineTest, without_a_folder_discovery_tells_the_apps_and_the_job) {
    vorle.environment.insert(QStringLiteral("XDG_DATA_DIRS"), vorle.path("none"));
    QDir(vorle.path()).mkpath(QStringLiteral("projet"));
    vorle.write("data/applications/a.desktop",
                "[Desktop Entry]\nType=Application\nExec=a\nName=Figma\n");
    vorle.write("data/applications/b.desktop",
                "[Desktop Entry]\nType=Application\nExec=b\nName=Échecs\nCategories=Game;\n");
    const auto shown = [&] { return vorle.run("decouverte --json").object(); };
    EXPECT_EQ(shown()[u"job"].toString(), u"Designer produit");
    const QJsonArray apps = shown()[u"apps"].toArray();
    ASSERT_EQ(apps.size(), 2);
    EXPECT_EQ(apps[0][u"name"].toString(), u"Échecs");
    EXPECT_TRUE(apps[0][u"leisure"].toBool());
    EXPECT_TRUE(apps[1][u"tool"].toBool());

    vorle.write("projet/requirements.txt", "django");
    ASSERT_EQ(vorle.run({QStringLiteral("projet"), QStringLiteral("ajouter"), vorle.path("projet")})
                  .status,
              0);
    EXPECT_EQ(shown()[u"job"].toString(), u"Développeur Python");
}

} // namespace
} // namespace vorle
