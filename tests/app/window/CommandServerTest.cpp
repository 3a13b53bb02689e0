// Command lines that reach the running app: the program itself on one end, the app's objects in
// this process on the other.

#include "app/models/TopicListModel.h"
#include "app/models/territory/ProjectsModel.h"
#include "app/wiring/RunTimer.h"
#include "platform/fakes/FakeFilePicker.h"
#include "search/run/RunPlan.h"
#include "tests/app/window/CommandServerFixture.h"
#include "tests/support/HostileNames.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QtEndian>

#include <gmock/gmock.h>

#include <csignal>

namespace vorle {
namespace {

using test::CommandServerTest;
using test::Program;
using testing::HasSubstr;

TEST_F(CommandServerTest, topics_are_imported_into_the_open_app_from_where_the_terminal_stands) {
    open();
    const Program::Outcome kept = vorle.run({QStringLiteral("exporter"), vorle.path("dehors")});
    EXPECT_EQ(kept.status, 0) << kept.err;
    auto away = json::decode<QList<Topic>>(vorle.read("dehors/topics.json"));
    ASSERT_EQ(away.size(), 2);
    away += test::sampleTopic(QStringLiteral("neuf"));
    vorle.write("dehors/importer", json::encode(away)); // named as the command is
    const TopicListModel inbox(app->store(), Section::Inbox, app->clock());
    QProcess &command = vorle.command(Program::parted("importer importer --json"));
    command.setWorkingDirectory(vorle.path("dehors"));
    command.start();
    const Program::Outcome imported = Program::end(command);
    EXPECT_EQ(imported.status, 0) << imported.err;
    EXPECT_THAT(imported.err, HasSubstr("1 sujet importé, 2 déjà là."));
    EXPECT_EQ(imported.object()[QStringLiteral("sameTopic")].toInt(), 2);
    EXPECT_EQ(inbox.rowCount(), 3);
    EXPECT_EQ(json::decode<QList<Topic>>(test::readFile(app->topicsFile())), away);

    const Program::Outcome none = vorle.run("importer nulle-part");
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.err, HasSubstr("Ce fichier n’existe pas"));
    EXPECT_EQ(vorle.run("exporter x --format xml").status, 2);
}

TEST_F(CommandServerTest, a_decision_from_a_terminal_is_seen_by_the_open_app_at_once) {
    open();
    const TopicListModel inbox(app->store(), Section::Inbox, app->clock());
    const TopicListModel program(app->store(), Section::Program, app->clock());
    ASSERT_EQ(inbox.rowCount(), 2);
    const Program::Outcome kept = vorle.run("trier ab11 garder");
    EXPECT_EQ(kept.status, 0) << kept.err;
    EXPECT_EQ(kept.out, "Gardé · Programme  AB11\n");
    EXPECT_EQ(kept.err, "");
    EXPECT_EQ(inbox.rowCount(), 1);
    EXPECT_EQ(program.rowCount(), 1);

    const Program::Outcome corrected = vorle.run("corriger ab22 3 --texte Déjà\u00A0lu --json");
    EXPECT_EQ(corrected.status, 0) << corrected.err;
    EXPECT_EQ(json::decode<Topic>(corrected.bytes()), *topic("AB22"));
    ASSERT_TRUE(topic("AB22")->correction);
    EXPECT_EQ(topic("AB22")->correction->score, 3);
    // On disk too, and the app still holds its topics.
    const auto saved = json::decode<QList<Topic>>(test::readFile(app->topicsFile()));
    EXPECT_EQ(saved[0].status, TopicStatus::Program);
    EXPECT_EQ(saved[1], *topic("AB22"));
    EXPECT_TRUE(app->lock().isHeld());

    // Another name of the topics file leads to the same app.
    QFile::link(app->topicsFile(), vorle.path("link.json"));
    vorle.environment.insert(QStringLiteral("VORLE_STORE"), vorle.path("link.json"));
    EXPECT_EQ(vorle.run("trier ab22 plus-tard").status, 0);
    EXPECT_EQ(topic("AB22")->status, TopicStatus::Reserve);

    // What goes wrong keeps its words and its status.
    const Program::Outcome unknown = vorle.run("trier cc garder");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.err, HasSubstr("Aucun sujet n’a un identifiant qui commence par « cc »."));
    EXPECT_EQ(vorle.run("trier xyz garder").status, 2);
}

TEST_F(CommandServerTest, links_are_added_to_the_open_app_as_they_are_written) {
    open();
    vorle.agent.signOut(); // they wait
    app->preferences().change(&Settings::projects, {{QStringLiteral("Potager"), QString()}});
    ASSERT_TRUE(app->preferences().flush());
    const Program::Outcome added =
        vorle.run({QStringLiteral("ajouter"), QStringLiteral("example.org/a"),
                   QStringLiteral("--note"), QStringLiteral("--pour moi"),
                   QStringLiteral("--projet=potager"), QStringLiteral("--json")});
    EXPECT_EQ(added.status, 0) << added.err;
    const auto shown = json::decode<Topic>(added.bytes());
    EXPECT_EQ(shown.capturedURL, QStringLiteral("https://example.org/a"));
    EXPECT_EQ(shown.note, QStringLiteral("--pour moi"));
    EXPECT_EQ(shown.project, QStringLiteral("Potager"));
    EXPECT_EQ(json::decode<QList<Topic>>(test::readFile(app->topicsFile())).last().id, shown.id);
    EXPECT_THAT(vorle.run("ajouter example.org/a#b").err, HasSubstr("Tu as déjà ce lien."));
    const Program::Outcome again = vorle.run("ajouter example.org/a --note encore");
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_THAT(again.out, HasSubstr("j’y ai ajouté ce que tu en dis"));
    EXPECT_EQ(app->store().topic(shown.id)->note, QStringLiteral("--pour moi\nencore"));
    EXPECT_EQ(vorle.run("ajouter example.org/b --projet Jardin").status, 2);
    EXPECT_EQ(vorle.run("ajouter vorle://add?url=https://a.fr/").status, 2);

    // A name is a name, whatever it looks like.
    const qsizetype before = app->store().count();
    int number = 0;
    const QStringList names = test::hostileNames();
    for (const QString &name : names) {
        const Program::Outcome outcome =
            asked({.words = {QStringLiteral("ajouter"), QStringLiteral("--titre"), name,
                             QStringLiteral("--note=") + name, QStringLiteral("--"),
                             QStringLiteral("https://example.org/n%1").arg(++number)}});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out.find('\033'), std::string::npos) << outcome.out;
        // As a link it is a web link or none.
        asked({.words = {QStringLiteral("ajouter"), QStringLiteral("--"), name}});
    }
    EXPECT_GE(app->store().count(), before + names.size());
    for (const TopicPtr &topic : app->store().topics()) {
        EXPECT_TRUE(!topic->capturedURL || topic->capturedURL->startsWith(u"http"));
    }
}

TEST_F(CommandServerTest, the_capture_opens_on_what_it_is_handed_and_adds_nothing) {
    QList<cli::LinkToCapture> proposed;
    bool taken = true;
    propose = [&](const cli::LinkToCapture &link) {
        proposed += link;
        return taken;
    };
    open();
    EXPECT_EQ(vorle.run("capturer").status, 0);
    EXPECT_EQ(vorle.run("capturer example.org/a --titre T").status, 0);
    EXPECT_EQ(
        vorle.run("capturer -- vorle://add?url=https%3A%2F%2Fa.fr%2F&title=Un%20titre").status, 0);
    ASSERT_EQ(proposed.size(), 3);
    EXPECT_EQ(proposed[0].url, QString());
    EXPECT_EQ(proposed[1].url, QStringLiteral("https://example.org/a"));
    EXPECT_EQ(proposed[1].giver, WebLink::Giver::User);
    EXPECT_EQ(proposed[2].url, QStringLiteral("https://a.fr/"));
    EXPECT_EQ(proposed[2].title, QStringLiteral("Un titre"));
    EXPECT_EQ(proposed[2].giver, WebLink::Giver::Stranger);
    taken = false;
    EXPECT_EQ(vorle.run("capturer example.org/b").status, 1);
    for (const QString &text : test::hostileNames()) {
        asked({.words = {QStringLiteral("capturer"), QStringLiteral("--"),
                         QStringLiteral("vorle://add?url=") + text}});
        asked({.words = {QStringLiteral("capturer"), QStringLiteral("--"), text}});
    }
    for (const cli::LinkToCapture &link : std::as_const(proposed)) {
        EXPECT_TRUE(link.url.isEmpty() || link.url.startsWith(u"http"));
    }
    EXPECT_EQ(app->store().count(), 2);
    // What a desktop's key or menu hands over, which nobody reads a terminal of, is told in the
    // app.
    proposed.clear();
    QProcess &unheard = vorle.command(Program::parted("capturer javascript:alert(1)"));
    unheard.setStandardErrorFile(QProcess::nullDevice());
    unheard.start();
    EXPECT_EQ(Program::end(unheard).status, 1);
    ASSERT_EQ(proposed.size(), 1);
    EXPECT_EQ(proposed[0].url, QString());
    EXPECT_EQ(proposed[0].problem, QStringLiteral("Ce n’est pas l’adresse d’une page web."));
    EXPECT_EQ(vorle.run("capturer javascript:alert(1)").status, 1);
    EXPECT_EQ(proposed.size(), 1) << "a terminal was told already";
}

TEST_F(CommandServerTest, the_capture_waits_with_an_app_that_waits_for_its_topics) {
    QList<cli::LinkToCapture> proposed;
    propose = [&](const cli::LinkToCapture &link) {
        proposed += link;
        return true;
    };
    StoreLock running(app->topicsFile(), StoreLock::Right::BeTheApp);
    ASSERT_TRUE(running.tryLock());
    listen();
    int raised = 0; // its window says what it waits for
    QObject::connect(instance.get(), &SingleInstance::raiseAsked, [&] { ++raised; });
    vorle.environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    QProcess &capture = vorle.start("capturer example.org/a");
    QByteArray said;
    test::spinUntil([&] {
        said += capture.readAllStandardError();
        return raised > 0 && said.contains("vorle attend la fin d’une autre commande");
    });
    // Longer than an app that was started and is gone again is waited for.
    test::waitFor(sleepFor(std::chrono::seconds(4)));
    EXPECT_EQ(capture.state(), QProcess::Running);
    instance->serve();
    EXPECT_EQ(Program::end(capture).status, 0);
    ASSERT_EQ(proposed.size(), 1);
    EXPECT_EQ(proposed[0].url, QStringLiteral("https://example.org/a"));
    EXPECT_EQ(raised, 1);
}

TEST_F(CommandServerTest, a_run_is_the_engines_and_leaves_what_another_one_has_pending) {
    open();
    Topic pending = test::sampleTopic(QStringLiteral("En cours"), TopicStatus::Pending);
    app->store().add({pending});
    const Program::Outcome refused = vorle.run("fouille");
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("Rien à fouiller"));
    EXPECT_EQ(topic("En cours")->status, TopicStatus::Pending);
}

TEST_F(CommandServerTest, refuses_what_it_does_not_do_for_others) {
    open();
    const struct {
        const char *typed;
        int status;
        const char *said;
    } cases[] = {
        {"", 2, "Commande inconnue"},
        {"effacer tout", 2, "Commande inconnue\u00A0: effacer"},
        {"calibrer --reprendre", 1, "vorle est ouvert"},
        {"reglages radius 2", 1, "vorle est ouvert"},
        {"trier ab11", 2, "Usage : vorle trier"},
        {"trier ab11 garder --force", 2, "Option inconnue"},
    };
    const auto before = app->store().topics();
    for (const auto &each : cases) {
        const Program::Outcome outcome = asked({.words = Program::parted(each.typed), .width = -5});
        EXPECT_EQ(outcome.status, each.status) << each.typed;
        EXPECT_THAT(outcome.err, HasSubstr(each.said));
        EXPECT_EQ(outcome.out, "");
    }
    EXPECT_EQ(app->store().topics(), before);
    // A terminal that shows colours gets them from here.
    EXPECT_THAT(asked({.words = Program::parted("trier ab11 garder"), .colours = true}).out,
                HasSubstr("\033[1mGardé"));
}

TEST_F(CommandServerTest, stops_when_the_caller_interrupts_or_vanishes) {
    open();
    QProcess &interrupted = vorle.start("fiche ab11");
    test::spinUntil([&] { return calls() == 1; });
    kill(pid_t(interrupted.processId()), SIGINT);
    const Program::Outcome outcome = Program::end(interrupted);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("J’écris la fiche de lecture…\nArrêté.\n"));
    EXPECT_FALSE(app->briefs().running());

    QProcess &vanished = vorle.start("fiche ab22");
    test::spinUntil([&] { return calls() == 2; });
    vanished.kill();
    test::spinUntil([&] { return !app->briefs().running(); });
    EXPECT_FALSE(topic("AB22")->brief);

    // An app that quits ends what it runs for others.
    QProcess &last = vorle.start("fiche ab11");
    test::spinUntil([&] { return calls() == 3; });
    test::waitFor(door->closed());
    EXPECT_EQ(Program::end(last).status, 1);
    EXPECT_FALSE(app->briefs().running());
}

TEST_F(CommandServerTest, the_open_app_follows_what_a_command_writes_to_the_settings) {
    Preferences &preferences = app->preferences();
    preferences.watch();
    test::FixedClock clock; // Monday 2 November 2026, 9:30
    const RunTimer timer(preferences, clock, QTimeZone::utc());
    test::FakeFilePicker files;
    ProjectsModel projects({preferences, files}, {});
    const auto at = [](int day, int hour) {
        return QDateTime(QDate(2026, 11, day), QTime(hour, 0), Qt::UTC);
    };
    EXPECT_EQ(timer.next(), at(9, 8));
    EXPECT_FALSE(refusalText(preferences).isEmpty());
    EXPECT_EQ(vorle.run(R"(reglages schedule {"weekdays":[3],"hour":9,"minute":0})").status, 0);
    test::spinUntil([&] { return timer.next() == at(3, 9); });

    QDir(vorle.path()).mkdir(QStringLiteral("projet"));
    const QByteArray adding = "projet ajouter " + vorle.path("projet").toUtf8();
    EXPECT_EQ(vorle.run(adding.constData()).status, 0);
    test::spinUntil([&] { return refusalText(preferences).isEmpty(); });
    test::spinUntil([&] { return projects.rows()->count() == 1; });

    for (const auto &[key, value] :
         {std::pair("weeklyMinutes", "90"), std::pair("agent", "\"codex\""),
          std::pair("appearance", "\"Sombre\""), std::pair("terminal", "\"Ghostty\""),
          std::pair("disabledReflexes", "[\"long-later\"]")}) {
        const QByteArray words = QByteArray("reglages ") + key + ' ' + value;
        EXPECT_EQ(vorle.run(words.constData()).status, 0) << key;
        const QJsonValue wanted =
            QJsonDocument::fromJson('[' + QByteArray(value) + ']').array().first();
        test::spinUntil(
            [&, name = QString::fromLatin1(key)] { return preferences.setting(name) == wanted; });
    }
}

TEST_F(CommandServerTest, garbage_ends_its_connection_and_nothing_else) {
    open();
    const auto framed = [](const QByteArray &text) {
        QByteArray length(4, Qt::Uninitialized);
        qToBigEndian(quint32(text.size()), length.data());
        return length + text;
    };
    for (const QByteArray &bytes :
         {QByteArray("GET / HTTP/1.1\r\n\r\n"), QByteArray(4, '\xFF'), QByteArray(4, '\0'),
          framed("{"), framed("[]"), framed("{\"kind\":\"rm\"}"), framed("{\"kind\":\"end\"}"),
          framed("{\"kind\":\"command\"}"), framed("{\"kind\":\"command\",\"command\":{}}"),
          framed(R"({"kind":"command","command":{"words":"trier","colours":1,"width":"x"}})"),
          framed(QByteArray(100000, '[')), framed(QByteArray("\xFF\xFE\x00{", 4)),
          QByteArray("\0\0\0\x40{\"kind\"", 12)}) { // and then not a byte more
        QLocalSocket socket;
        socket.connectToServer(appSocketName(app->topicsFile()));
        socket.write(bytes);
        test::spinUntil([&] { return socket.state() == QLocalSocket::UnconnectedState; });
    }
    // So many that never ask are more than the app keeps, and do not keep it for long.
    std::list<QLocalSocket> silent(20);
    for (QLocalSocket &socket : silent) {
        socket.connectToServer(appSocketName(app->topicsFile()));
    }
    const Program::Outcome outcome = vorle.run("trier ab11 garder");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(topic("AB11")->status, TopicStatus::Program);
}

TEST_F(CommandServerTest, without_an_answer_the_command_waits_as_for_another_one) {
    QProcess &waiting = vorle.start("trier ab11 garder");
    QByteArray said;
    test::spinUntil([&] {
        said += waiting.readAllStandardError();
        return said.endsWith('\n');
    });
    EXPECT_THAT(said.toStdString(), HasSubstr("Une autre commande vorle travaille sur tes sujets"));
    EXPECT_EQ(topic("AB11")->status, TopicStatus::Inbox);
    open(); // the app may open in between
    EXPECT_EQ(Program::end(waiting).status, 0);
    EXPECT_EQ(topic("AB11")->status, TopicStatus::Program);
}

} // namespace
} // namespace vorle
