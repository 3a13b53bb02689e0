// The program itself, run as a person runs it: arguments, standard streams, exit status, files.

#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

class CommandLineTest : public testing::Test {
protected:
    struct Outcome {
        int status = -1;
        QByteArray out;
        QByteArray err;
    };

    void SetUp() override {
        QDir(folder.path()).mkpath(QStringLiteral("home/.local/bin"));
        write(QStringLiteral("home/.local/bin/claude"),
              "#!/bin/sh\nexec python3 " VORLE_SUPPORT "/stand-in-agent.py \"$@\"\n");
        QFile(folder.filePath(QStringLiteral("home/.local/bin/claude")))
            .setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        write(QStringLiteral("home/.claude.json"), R"({"oauthAccount":{}})");
        const auto inFolder = [&](const char *variable, const char *name) {
            environment.insert(QString::fromLatin1(variable),
                               folder.filePath(QString::fromLatin1(name)));
        };
        inFolder("XDG_DATA_HOME", "data");
        inFolder("XDG_CONFIG_HOME", "config");
        inFolder("XDG_RUNTIME_DIR", "runtime");
        inFolder("VORLE_HOME", "home");
        environment.insert(QStringLiteral("VORLE_ALLOW_LOOPBACK"), QStringLiteral("1"));
        QDir(folder.path()).mkdir(QStringLiteral("runtime"));
        QFile(folder.filePath(QStringLiteral("runtime")))
            .setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void write(const QString &name, const QByteArray &bytes) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    std::unique_ptr<QProcess> start(const QStringList &arguments) {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment);
        process->start(QStringLiteral(VORLE_BINARIES "/vorle"), arguments);
        return process;
    }

    static Outcome end(QProcess &process) {
        test::spinUntil([&] { return process.state() == QProcess::NotRunning; }, 100s);
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput(), process.readAllStandardError()};
    }

    Outcome vorle(const QStringList &arguments) {
        const auto process = start(arguments);
        return end(*process);
    }

    /// The topics file's records.
    QList<Topic> topics(const char *name = "topics.json") {
        QFile file(folder.filePath(QStringLiteral("data/vorle/") + QString::fromLatin1(name)));
        return file.open(QIODevice::ReadOnly) ? json::decode<QList<Topic>>(file.readAll())
                                              : QList<Topic>();
    }

    /// A topic to follow whose every candidate is a page of the test server.
    void territory(int candidates, const char *judge, double seconds) {
        QStringList links;
        for (int i = 0; i < candidates; ++i) {
            const QByteArray path = "/p" + QByteArray::number(i);
            server.serve(path,
                         test::TestReply::page("<title>T</title><article>" +
                                               QByteArray("mot ").repeated(300) + "</article>"));
            links += QStringLiteral(R"({"title":"t%1","url":"%2","kind":"article","about":"Rust"})")
                         .arg(i)
                         .arg(server.link(path));
        }
        write(QStringLiteral("home/scenario.json"),
              QStringLiteral(R"({"candidates":{"Topics":[%1]},"judge":"%2","seconds":%3})")
                  .arg(links.join(u','), QString::fromUtf8(judge))
                  .arg(seconds)
                  .toUtf8());
        ASSERT_EQ(vorle({QStringLiteral("reglages"), QStringLiteral("interests"),
                         QStringLiteral("[\"Rust\"]")})
                      .status,
                  0);
    }

    int judgeCalls() {
        QFile log(folder.filePath(QStringLiteral("home/calls.log")));
        return log.open(QIODevice::ReadOnly) ? int(log.readAll().count("judge")) : 0;
    }

    QTemporaryDir folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    test::TestServer server;
};

TEST_F(CommandLineTest, a_captured_link_that_nobody_read_is_read_when_it_is_to_be_sorted_again) {
    territory(1, "ok", 0);
    Topic waiting;
    waiting.id = QUuid(QStringLiteral("CD330000-0000-4000-8000-000000000003"));
    waiting.title = QStringLiteral("un site");
    waiting.status = TopicStatus::Pending;
    waiting.readLevel = ReadLevel::None;
    waiting.foundAt = QDateTime(QDate(2026, 11, 2), QTime(8, 0), Qt::UTC);
    waiting.capturedURL = server.link("/p0");
    waiting.sources = {{QString(), *waiting.capturedURL}};
    for (const TopicStatus status : {TopicStatus::Pending, TopicStatus::Dismissed}) {
        waiting.status = status;
        QDir(folder.path()).mkpath(QStringLiteral("data/vorle"));
        write(QStringLiteral("data/vorle/topics.json"), json::encode(QList<Topic>{waiting}));
        const Outcome read =
            vorle({QStringLiteral("trier"), QStringLiteral("CD33"), QStringLiteral("retrier")});
        EXPECT_EQ(read.status, 0) << read.err.constData();
        EXPECT_THAT(read.out.toStdString(), HasSubstr("Lu et noté · À trier"));
        ASSERT_EQ(topics().size(), 1);
        EXPECT_EQ(topics().first().status, TopicStatus::Inbox);
        EXPECT_EQ(topics().first().score, 7);
    }
    // One that cannot be judged waits on, and says why.
    territory(1, "fail", 0);
    waiting.status = TopicStatus::Pending;
    write(QStringLiteral("data/vorle/topics.json"), json::encode(QList<Topic>{waiting}));
    const Outcome failed =
        vorle({QStringLiteral("trier"), QStringLiteral("CD33"), QStringLiteral("retrier")});
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.err.toStdString(), HasSubstr("le serveur est occupé"));
    EXPECT_EQ(topics().first().status, TopicStatus::Pending);
}

TEST_F(CommandLineTest, the_demonstration_goes_the_whole_road) {
    const Outcome run =
        vorle({QStringLiteral("fouille"), QStringLiteral("--demo"), QStringLiteral("--json")});
    ASSERT_EQ(run.status, 0) << run.err.constData();
    EXPECT_THAT(run.err.toStdString(), HasSubstr("Tes sujets\n"));
    EXPECT_THAT(run.err.toStdString(), HasSubstr("Lecture et tri : "));
    EXPECT_THAT(run.err.toStdString(), HasSubstr("failed, trying again: "));

    const QJsonObject report = QJsonDocument::fromJson(run.out).object();
    for (const char *key : {"date", "added", "costUSD", "seconds", "uncovered", "topics"}) {
        EXPECT_TRUE(report.contains(QLatin1StringView(key))) << key;
    }
    int added = 0;
    int unread = 0;
    QSet<int> scores;
    for (const Topic &topic : topics("demo-topics.json")) {
        EXPECT_EQ(topic.status, TopicStatus::Inbox);
        if (topic.mainSource()->url.startsWith(u"http://127.0.0.1:")) {
            ++added;
            EXPECT_FALSE(topic.why.isEmpty());
            unread += topic.readLevel == ReadLevel::None ? 1 : 0;
            scores.insert(topic.score);
        }
    }
    EXPECT_GE(added, 10);
    EXPECT_EQ(report[u"added"].toInt(), added);
    EXPECT_EQ(report[u"topics"].toArray().size(), added);
    EXPECT_EQ(unread, 0);
    EXPECT_EQ(report[u"dug"].toInt(), 1) << "one page is dead, and found elsewhere";
    EXPECT_GE(scores.size(), 4);
    QFile notesFile(folder.filePath(QStringLiteral("data/vorle/demo-topics-score-notes.json")));
    ASSERT_TRUE(notesFile.open(QIODevice::ReadOnly));
    const auto notes = json::decode<QList<ScoreProvenance>>(notesFile.readAll());
    EXPECT_EQ(notes.size(), added) << "what stood behind each score is kept, dug-up pages too";
    for (const ScoreProvenance &note : notes) {
        EXPECT_EQ(note.agent, QStringLiteral("claude"));
        EXPECT_GT(note.bytesRead, 0);
    }
    QFile runsFile(folder.filePath(QStringLiteral("data/vorle/demo-topics-runs.json")));
    ASSERT_TRUE(runsFile.open(QIODevice::ReadOnly));
    const auto runs = json::decode<QList<RunReport>>(runsFile.readAll());
    ASSERT_EQ(runs.size(), 7) << "the demonstration has a past, and this run joins it";
    EXPECT_EQ(runs[5].date.secsTo(runs[6].date) / 86'400, 7);
    EXPECT_EQ(runs[6].added, added);
    ASSERT_EQ(runs[6].sites.value_or(QList<SiteReport>()).size(), 1);
    EXPECT_GT(runs[6].sites->first().found, 0);
    EXPECT_TRUE(topics().isEmpty()) << "the real topics are left alone";
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("config/vorle/settings.json"))))
        << "so are the real settings";
}

TEST_F(CommandLineTest, wrong_usage_and_refusals_are_told_in_french_and_change_nothing) {
    const struct {
        QStringList words;
        int status;
        const char *text;
    } cases[] = {
        {{QStringLiteral("fouiller")}, 2, "Commande inconnue : fouiller"},
        {{QStringLiteral("sujets"), QStringLiteral("--statu")}, 2, "Option inconnue"},
        {{QStringLiteral("sujets"), QStringLiteral("--statut")}, 2, "attend une valeur"},
        {{QStringLiteral("sujets"), QStringLiteral("--statut=perdu")}, 2, "Statut inconnu"},
        {{QStringLiteral("lire")}, 2, "Usage : vorle lire URL"},
        {{QStringLiteral("lire"), QStringLiteral("ftp://x")}, 1, "n’est pas une adresse web"},
        {{QStringLiteral("projet"), QStringLiteral("oublier"), QStringLiteral("x")}, 2, "Usage"},
        {{QStringLiteral("projet"), QStringLiteral("ajouter"), QStringLiteral("/nulle/part")},
         1,
         "introuvable"},
        {{QStringLiteral("projet"), QStringLiteral("retirer"), QStringLiteral("x")}, 1, "Aucun"},
        {{QStringLiteral("reglages"), QStringLiteral("couleur")}, 1, "inconnu"},
        {{QStringLiteral("reglages"), QStringLiteral("appearance"), QStringLiteral("Sombre")},
         2,
         "n’est pas du JSON"},
        {{QStringLiteral("reglages"), QStringLiteral("weeklyMinutes"), QStringLiteral("\"3\"")},
         1,
         "weeklyMinutes"},
        {{QStringLiteral("fouille")}, 1, "Rien à fouiller : ajoute un dossier de projet"},
        {{QStringLiteral("consignes")}, 1, "Rien à fouiller : ajoute un dossier de projet"},
    };
    for (const auto &one : cases) {
        const Outcome outcome = vorle(one.words);
        EXPECT_EQ(outcome.status, one.status) << one.words.join(u' ').toStdString();
        EXPECT_THAT(outcome.err.toStdString(), HasSubstr(one.text));
        EXPECT_TRUE(outcome.out.isEmpty());
    }
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("config/vorle/settings.json"))));
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("home/calls.log"))));
}

TEST_F(CommandLineTest, help_comes_whatever_state_the_machine_is_in) {
    for (const char *name : {"HOME", "TMPDIR", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                             "XDG_RUNTIME_DIR", "VORLE_HOME"}) {
        environment.insert(QString::fromLatin1(name), QStringLiteral("/dev/null/nowhere"));
    }
    for (const QStringList &call :
         {QStringList{QStringLiteral("--help")}, QStringList{QStringLiteral("aide")},
          QStringList{QStringLiteral("fouille"), QStringLiteral("--help")}}) {
        const Outcome help = vorle(call);
        EXPECT_EQ(help.status, 0) << help.err.constData();
        EXPECT_THAT(help.out.toStdString(), HasSubstr("Usage : vorle"));
    }
    const Outcome refused = vorle({QStringLiteral("sujets")});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err.toStdString(), HasSubstr("Je ne peux pas démarrer. Le système a "));
}

TEST_F(CommandLineTest, a_result_that_could_not_be_written_is_a_failure) {
    if (!QFile::exists(QStringLiteral("/dev/full"))) {
        GTEST_SKIP() << "no such device on this system";
    }
    for (const char *command : {"aide", "reglages", "agents"}) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setStandardOutputFile(QStringLiteral("/dev/full"));
        process.start(QStringLiteral(VORLE_BINARIES "/vorle"), {QString::fromLatin1(command)});
        const Outcome outcome = end(process);
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_THAT(outcome.err.toStdString(), HasSubstr("n’a pas pu être écrit en entier"));
    }
}

TEST_F(CommandLineTest, a_relative_folder_in_the_environment_is_none) {
    environment.insert(QStringLiteral("HOME"), folder.filePath(QStringLiteral("home")));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QStringLiteral("ici"));
    ASSERT_EQ(
        vorle({QStringLiteral("reglages"), QStringLiteral("weeklyMinutes"), QStringLiteral("60")})
            .status,
        0);
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("home/.config/vorle/settings.json"))));
    EXPECT_FALSE(QFile::exists(QStringLiteral("ici")));
}

TEST_F(CommandLineTest, projects_and_settings_are_kept_and_shape_the_prompts) {
    QDir(folder.path()).mkdir(QStringLiteral("Mon projet"));
    write(QStringLiteral("Mon projet/package.json"),
          R"({"dependencies":{"next":"16","react":"19"},"devDependencies":{"typescript":"5"}})");
    const Outcome added =
        vorle({QStringLiteral("projet"), QStringLiteral("ajouter"),
               folder.filePath(QStringLiteral("Mon projet")), QStringLiteral("--nom"),
               QStringLiteral("Tiravue"), QStringLiteral("--description=un carnet"),
               QStringLiteral("--json")});
    const QJsonObject project = QJsonDocument::fromJson(added.out).array().first().toObject();
    EXPECT_EQ(project[u"name"].toString(), u"Tiravue");
    EXPECT_EQ(project[u"dependencies"].toInt(), 3);
    EXPECT_EQ(project[u"labels"].toArray().size(), 3);

    const Outcome prompts = vorle({QStringLiteral("consignes"), QStringLiteral("--json")});
    const QJsonArray shown = QJsonDocument::fromJson(prompts.out).array();
    ASSERT_EQ(shown.size(), 3);
    EXPECT_EQ(shown[0].toObject()[u"scope"].toString(), u"Tiravue");
    const QString prompt = shown[0].toObject()[u"prompt"].toString();
    EXPECT_TRUE(prompt.contains(u"Project watched: **Tiravue**, un carnet. Its dependency file"));
    for (const QStringView word :
         {u"@TODAY", u"@SINCE", u"@SCOPE", u"@COUNT", u"@RADIUS", u"@KNOWN"}) {
        EXPECT_FALSE(prompt.contains(word));
    }
    EXPECT_TRUE(shown[1].toObject()[u"prompt"].toString().contains(u"- Tiravue: un carnet ["));
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("home/calls.log"))))
        << "nothing is sent";

    EXPECT_EQ(
        vorle({QStringLiteral("projet"), QStringLiteral("retirer"), QStringLiteral("Tiravue")})
            .status,
        0);
    EXPECT_EQ(vorle({QStringLiteral("projet"), QStringLiteral("--json")}).out.trimmed(), "[]");
}

TEST_F(CommandLineTest, reading_a_link_the_person_typed_may_reach_this_machine) {
    environment.remove(QStringLiteral("VORLE_ALLOW_LOOPBACK"));
    server.serve("/a", test::TestReply::page("<title>Ici</title><article>" +
                                             QByteArray("mot ").repeated(300) + "</article>"));
    const Outcome read =
        vorle({QStringLiteral("lire"), server.link("/a"), QStringLiteral("--json")});
    EXPECT_EQ(read.status, 0);
    const QJsonObject page = QJsonDocument::fromJson(read.out).object();
    EXPECT_EQ(page[u"title"].toString(), u"Ici");
    EXPECT_EQ(page[u"level"].toString(), u"full");

    server.serve("/empty", test::TestReply::page("<p></p>"));
    const std::pair<QString, const char *> unread[] = {
        {server.link("/b"), "pas lu · le site a répondu 404"},
        {server.link("/empty"), "aucun texte"},
        {QStringLiteral("http://127.0.0.1:1/"), "injoignable"},
    };
    for (const auto &[link, reason] : unread) {
        const Outcome outcome = vorle({QStringLiteral("lire"), link});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.err.toStdString(), HasSubstr(reason));
    }
}

TEST_F(CommandLineTest, a_setting_that_cannot_be_kept_is_a_failure) {
    write(QStringLiteral("config"), "a file where the folder should be");
    QDir(folder.path()).mkdir(QStringLiteral("projet"));
    const QStringList calls[] = {
        {QStringLiteral("reglages"), QStringLiteral("weeklyMinutes"), QStringLiteral("60")},
        {QStringLiteral("projet"), QStringLiteral("ajouter"),
         folder.filePath(QStringLiteral("projet"))},
    };
    for (const QStringList &call : calls) {
        const Outcome outcome = vorle(call);
        EXPECT_EQ(outcome.status, 1) << call.join(u' ').toStdString();
        EXPECT_THAT(outcome.err.toStdString(), HasSubstr("n’a pas pu être enregistré dans"));
        EXPECT_TRUE(outcome.out.isEmpty());
    }
    QFile::remove(folder.filePath(QStringLiteral("config")));
    QDir(folder.path()).mkpath(QStringLiteral("config/vorle/settings.json"));
    const Outcome refused = vorle({QStringLiteral("reglages")});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err.toStdString(), HasSubstr("un dossier se trouve à la place du fichier"));
}

TEST_F(CommandLineTest, a_run_may_not_reach_this_machine_unless_told) {
    territory(3, "ok", 0);
    environment.insert(QStringLiteral("VORLE_ALLOW_LOOPBACK"), QStringLiteral("0"));
    EXPECT_EQ(vorle({QStringLiteral("fouille")}).status, 0);
    EXPECT_TRUE(server.requests().isEmpty());
    for (const Topic &topic : topics()) {
        EXPECT_EQ(topic.readLevel, ReadLevel::None);
    }
}

// Ctrl-C in a terminal: the judged topics stay, the agents end, the status says it.
TEST_F(CommandLineTest, an_interrupt_keeps_what_was_judged) {
    territory(24, "ok", 0.5);
    const auto run = start({QStringLiteral("fouille")});
    test::spinUntil([&] { return topics().size() >= 8; });
    kill(pid_t(run->processId()), SIGINT);
    const Outcome outcome = end(*run);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err.toStdString(), HasSubstr("Fouille arrêtée\u00A0: "));
    const QList<Topic> kept = topics();
    EXPECT_GE(kept.size(), 8);
    EXPECT_LT(kept.size(), 24);
    for (const Topic &topic : kept) {
        EXPECT_EQ(topic.status, TopicStatus::Inbox);
    }
}

TEST_F(CommandLineTest, a_killed_run_loses_nothing_judged_and_pays_nothing_twice) {
    territory(24, "ok", 0.5);
    const auto run = start({QStringLiteral("fouille")});
    test::spinUntil([&] { return topics().size() >= 8; });
    run->kill();
    end(*run);
    const qsizetype judged = topics().size();
    ASSERT_LT(judged, 24);
    EXPECT_EQ(topics().first().status, TopicStatus::Pending);

    const Outcome next = vorle({QStringLiteral("fouille")});
    EXPECT_EQ(next.status, 0) << next.err.constData();
    EXPECT_THAT(next.err.toStdString(), HasSubstr("d’une fouille interrompue"));
    const QList<Topic> kept = topics();
    EXPECT_EQ(kept.size(), 24) << "what was judged is not judged again, the rest is";
    for (const Topic &topic : kept) {
        EXPECT_EQ(topic.status, TopicStatus::Inbox);
    }
}

TEST_F(CommandLineTest, two_runs_at_once_lose_nothing) {
    territory(16, "ok", 0.2);
    const auto first = start({QStringLiteral("fouille")});
    test::spinUntil([&] { return judgeCalls() > 0; });
    const auto second = start({QStringLiteral("fouille")});
    const Outcome later = end(*second);
    EXPECT_EQ(end(*first).status, 0);
    EXPECT_EQ(later.status, 0);
    EXPECT_THAT(later.err.toStdString(), HasSubstr("j’attends qu’elle finisse"));
    EXPECT_EQ(topics().size(), 16);
    EXPECT_EQ(judgeCalls(), 2) << "the second run knew every link";
    EXPECT_THAT(later.err.toStdString(), HasSubstr("vorle calibrer --passer"));
}

TEST_F(CommandLineTest, an_unreadable_topics_file_is_kept_aside_and_told) {
    QDir(folder.path()).mkpath(QStringLiteral("data/vorle"));
    write(QStringLiteral("data/vorle/topics.json"), "{\"pas\":\"une liste\"}");
    EXPECT_EQ(vorle({QStringLiteral("sujets")}).status, 1);
    territory(2, "ok", 0);
    const Outcome run = vorle({QStringLiteral("fouille")});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err.toStdString(), HasSubstr("topics.json.illisible-"));
    EXPECT_EQ(topics().size(), 2);
    const QStringList aside = QDir(folder.filePath(QStringLiteral("data/vorle")))
                                  .entryList({QStringLiteral("topics.json.illisible-*")});
    ASSERT_EQ(aside.size(), 1);
    QFile old(folder.filePath(QStringLiteral("data/vorle/") + aside.first()));
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "{\"pas\":\"une liste\"}");
}

TEST_F(CommandLineTest, an_agent_that_is_missing_or_signed_out_is_named) {
    territory(1, "ok", 0);
    write(QStringLiteral("home/.claude.json"), "{");
    EXPECT_THAT(vorle({QStringLiteral("fouille")}).err.toStdString(),
                HasSubstr("Claude Code n’est plus connecté."));
    environment.insert(QStringLiteral("VORLE_AGENT"), QStringLiteral("codex"));
    const Outcome run = vorle({QStringLiteral("fouille")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err.toStdString(), HasSubstr("Codex est introuvable sur ce Mac."));
    const QJsonObject shown =
        QJsonDocument::fromJson(vorle({QStringLiteral("agents"), QStringLiteral("--json")}).out)
            .object();
    EXPECT_EQ(shown[u"chosen"].toString(), u"codex");
    EXPECT_EQ(shown[u"agents"].toArray()[0].toObject()[u"state"].toString(), u"signed out");
    EXPECT_EQ(shown[u"agents"].toArray()[1].toObject()[u"state"].toString(), u"missing");
}

TEST_F(CommandLineTest, without_a_folder_discovery_tells_the_apps_and_the_job) {
    environment.insert(QStringLiteral("XDG_DATA_DIRS"), folder.filePath(QStringLiteral("none")));
    QDir(folder.path()).mkpath(QStringLiteral("data/applications"));
    QDir(folder.path()).mkpath(QStringLiteral("projet"));
    write(QStringLiteral("data/applications/a.desktop"),
          "[Desktop Entry]\nType=Application\nExec=a\nName=Figma\n");
    write(QStringLiteral("data/applications/b.desktop"),
          "[Desktop Entry]\nType=Application\nExec=b\nName=Échecs\nCategories=Game;\n");
    const QStringList command{QStringLiteral("decouverte"), QStringLiteral("--json")};
    const auto shown = [&] { return QJsonDocument::fromJson(vorle(command).out).object(); };
    EXPECT_EQ(shown()[u"job"].toString(), u"Designer produit");
    const QJsonArray apps = shown()[u"apps"].toArray();
    ASSERT_EQ(apps.size(), 2);
    EXPECT_EQ(apps[0][u"name"].toString(), u"Échecs");
    EXPECT_TRUE(apps[0][u"leisure"].toBool());
    EXPECT_TRUE(apps[1][u"tool"].toBool());

    write(QStringLiteral("projet/requirements.txt"), "django");
    ASSERT_EQ(vorle({QStringLiteral("projet"), QStringLiteral("ajouter"),
                     folder.filePath(QStringLiteral("projet"))})
                  .status,
              0);
    EXPECT_EQ(shown()[u"job"].toString(), u"Développeur Python");
}

} // namespace
} // namespace vorle
