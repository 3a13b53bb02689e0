// What follows the search, run as a person runs it: vorle sujets ID, trier, corriger, programme,
// calibrer.

#include "app/labels/ScoreExplanation.h"
#include "core/Preferences.h"
#include "tests/core/Samples.h"
#include "tests/support/Wait.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace vorle {
namespace {

using testing::HasSubstr;
using testing::Not;

const char *const first = "AB110000-0000-4000-8000-000000000001";
const char *const second = "AB220000-0000-4000-8000-000000000002";

QStringList words(const char *text) {
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

class Triage : public testing::Test {
protected:
    struct Outcome {
        int status = -1;
        std::string out;
        std::string err;
    };

    Triage() {
        environment.insert(QStringLiteral("VORLE_STORE"), file);
        for (const char *variable :
             {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR", "VORLE_HOME"}) {
            environment.insert(QString::fromLatin1(variable), folder.path());
        }
        QList<Topic> list;
        for (const char *id : {first, second}) {
            Topic topic = test::sampleTopic(QString::fromLatin1(id).left(4));
            topic.id = QUuid(QString::fromLatin1(id));
            topic.readLevel = ReadLevel::Full;
            list += topic;
        }
        save(list);
    }

    void save(const QList<Topic> &list) const { test::writeFile(file, json::encode(list)); }
    QList<Topic> topics() const { return json::decode<QList<Topic>>(test::readFile(file)); }

    std::unique_ptr<QProcess> prepare(const QStringList &arguments) const {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment);
        process->setProgram(QStringLiteral(VORLE_BINARIES "/vorle"));
        process->setArguments(arguments);
        return process;
    }
    Outcome run(const QStringList &arguments) const {
        const auto process = prepare(arguments);
        process->start();
        test::spinUntil([&] { return process->state() == QProcess::NotRunning; });
        return {process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -1,
                process->readAllStandardOutput().toStdString(),
                process->readAllStandardError().toStdString()};
    }
    Outcome run(const char *text) const { return run(words(text)); }

    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("topics.json"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(Triage, a_decision_says_where_the_topic_went_and_is_on_disk) {
    const struct {
        const char *action;
        const char *said;
        TopicStatus status;
    } steps[] = {
        {"garder", "Gardé · Programme", TopicStatus::Program},
        {"plus-tard", "Reporté · Réserve", TopicStatus::Reserve},
        {"retirer", "Remis · À trier", TopicStatus::Inbox},
        {"plus-tard", "Plus tard · Réserve", TopicStatus::Reserve},
        {"fait --avis useful", "Utile · Bibliothèque", TopicStatus::Done},
        {"fait --avis gem", "Pépite · Bibliothèque", TopicStatus::Done},
        {"garder", "Gardé · Programme", TopicStatus::Program},
        {"retirer", "Retiré · À trier", TopicStatus::Inbox},
        {"pas-pour-moi", "Écarté · Pas pour moi", TopicStatus::Dismissed},
        {"fait", "Fait · Bibliothèque", TopicStatus::Done},
    };
    for (const auto &step : steps) {
        const Outcome outcome =
            run(QStringList{QStringLiteral("trier"), QStringLiteral("ab1")} + words(step.action));
        EXPECT_EQ(outcome.status, 0) << step.action << outcome.err;
        EXPECT_THAT(outcome.out, HasSubstr(step.said));
        EXPECT_EQ(topics()[0].status, step.status);
    }
    EXPECT_EQ(topics()[0].postponedCount, 2);
    EXPECT_EQ(topics()[1].status, TopicStatus::Inbox);

    // Taken twice, it counts once.
    const Topic before = topics()[0];
    EXPECT_EQ(run("trier AB11 fait").status, 0);
    EXPECT_EQ(topics()[0], before);

    const Outcome shown = run("trier {ab220000-0000-4000-8000-000000000002} garder --json");
    EXPECT_EQ(json::decode<Topic>(QByteArray::fromStdString(shown.out)), topics()[1]);
}

TEST_F(Triage, what_cannot_be_done_is_told_in_french_and_changes_nothing) {
    QList<Topic> list = topics();
    Topic captured = test::sampleTopic(QStringLiteral("capturé"), TopicStatus::Pending);
    captured.id = QUuid(QStringLiteral("CD330000-0000-4000-8000-000000000003"));
    captured.capturedURL = QStringLiteral("https://example.org/");
    captured.readLevel = ReadLevel::None;
    captured.criteria.reset();
    list += captured;
    captured.id = QUuid(QStringLiteral("CE440000-0000-4000-8000-000000000004"));
    captured.status = TopicStatus::Dismissed;
    list += captured;
    save(list);
    const QByteArray before = test::readFile(file);
    const struct {
        const char *words;
        int status;
        const char *text;
    } cases[] = {
        {"trier AB garder", 1, "désigne 2 sujets"},
        {"trier EF garder", 1, "Aucun sujet"},
        {"trier %2 garder", 2, "« %2 » n’est pas l’identifiant"},
        {"trier AB11 jeter", 2, "Action inconnue"},
        {"trier AB11 garder --avis gem", 2, "--avis ne va qu’avec « fait »"},
        {"trier AB11 fait --avis super", 2, "Avis inconnu"},
        {"trier AB11", 2, "Usage : vorle trier"},
        {"trier CD garder", 1, "Je n’ai pas encore pu juger cette page"},
        {"trier CD plus-tard", 1, "Pour la faire lire : vorle trier CD retrier"},
        {"trier CE garder", 1, "Tu as écarté cette page avant que je la juge"},
        {"trier CE retirer", 1, "vorle trier CE retrier"},
        {"corriger AB11 12", 2, "de 0 à 10"},
        {"corriger AB11 sept", 2, "de 0 à 10"},
        {"corriger AB11", 2, "Il manque la note"},
        {"corriger AB11 5 --retirer", 2, "ne donne pas de note"},
        {"corriger AB11 5 --raison bof", 2, "« hors de mon domaine », « plus important que ça »"},
        {"corriger AB11 5 --raison=", 2, "Raison inconnue"},
        {"sujets AB11 --statut inbox", 2, "pas les deux"},
        {"calibrer", 2, "lance la commande dans un terminal"},
        {"calibrer --reprendre", 2, "lance la commande dans un terminal"},
        {"calibrer --reprendre --passer", 2, "Choisis entre"},
    };
    for (const auto &one : cases) {
        const Outcome outcome = run(one.words);
        EXPECT_EQ(outcome.status, one.status) << one.words;
        EXPECT_THAT(
            QString::fromStdString(outcome.err).replace(QChar(QChar::Nbsp), u' ').toStdString(),
            HasSubstr(one.text))
            << one.words;
        EXPECT_TRUE(outcome.out.empty()) << outcome.out;
    }
    EXPECT_EQ(test::readFile(file), before);
    EXPECT_EQ(run("reglages calibrationStart").out, "null\n");

    test::writeFile(file, "{}");
    for (const char *command : {"trier AB11 garder", "corriger AB11 5", "programme", "sujets AB"}) {
        const Outcome outcome = run(command);
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_THAT(outcome.err, HasSubstr("illisibles"));
    }
    EXPECT_EQ(test::readFile(file), "{}");
}

TEST_F(Triage, a_correction_shows_the_users_score_with_the_former_one) {
    const Outcome made = run(words("corriger ab11 9 --raison fiable,domaine --texte") +
                             QStringList{QStringLiteral("lu ailleurs")});
    EXPECT_THAT(made.out, HasSubstr("Note 9 sur 10, j’avais mis 7"));
    const Correction kept = topics()[0].correction.value_or(Correction());
    EXPECT_EQ(kept.score, 9);
    EXPECT_EQ(kept.tags, (QList<QString>{QStringLiteral("hors de mon domaine"),
                                         QStringLiteral("pas fiable")}));
    EXPECT_EQ(topics()[0].score, 7) << "the app's own score stays";

    const Outcome open = run("sujets AB11");
    EXPECT_THAT(open.out, HasSubstr("   9  AB11"));
    EXPECT_THAT(open.out, HasSubstr("J’avais mis 7"));
    EXPECT_THAT(open.out, HasSubstr("pas fiable"));

    EXPECT_THAT(run("corriger AB11 --retirer").out, HasSubstr("Note 7 sur 10, la mienne"));
    EXPECT_FALSE(topics()[0].correction);
    EXPECT_EQ(run("corriger AB11 --retirer").status, 0);
}

TEST_F(Triage, a_list_of_one_status_stands_in_the_order_of_the_windows_section) {
    QList<Topic> list;
    const auto add = [&](const char *title, TopicStatus status, int score, int day) {
        Topic topic = test::sampleTopic(QString::fromUtf8(title), status);
        topic.score = score;
        topic.minutes = 60;
        topic.foundAt = QDateTime(QDate(2026, 11, day), QTime(8, 0), Qt::UTC);
        topic.triagedAt = topic.foundAt;
        topic.doneAt = topic.foundAt;
        list += topic;
    };
    add("sept-hier", TopicStatus::Inbox, 7, 1);
    add("neuf", TopicStatus::Inbox, 9, 1);
    add("sept", TopicStatus::Inbox, 7, 2);
    for (const char *title : {"quatrième", "troisième"}) {
        add(title, TopicStatus::Program, title[0] == 'q' ? 6 : 7, 1);
    }
    add("long", TopicStatus::Program, 9, 1);
    list.last().minutes = 900; // no room in the week: it waits, whatever its score
    add("ancien", TopicStatus::Reserve, 9, 1);
    add("récent", TopicStatus::Reserve, 5, 3);
    add("bougé", TopicStatus::Reserve, 5, 1);
    list[1].sources = list.last().sources; // found since: news of it
    list[1].foundAt = list.last().foundAt.addDays(1);
    add("fait-avant", TopicStatus::Done, 9, 1);
    add("fait-après", TopicStatus::Done, 2, 2);
    add("écarté-a", TopicStatus::Dismissed, 2, 1);
    add("écarté-b", TopicStatus::Dismissed, 9, 2);
    save(list);
    const struct {
        const char *status;
        const char *wanted;
    } cases[] = {
        {"inbox", "neuf sept sept-hier"},   {"program", "troisième quatrième long"},
        {"reserve", "bougé récent ancien"}, {"done", "fait-après fait-avant"},
        {"dismissed", "écarté-a écarté-b"},
    };
    for (const auto &row : cases) {
        const std::string command = std::string("sujets --statut ") + row.status;
        QStringList said;
        for (const QString &line : QString::fromStdString(run(command.c_str()).out).split(u'\n')) {
            if (const QStringList parts = line.simplified().split(u' '); parts.size() > 1) {
                said += parts[1];
            }
        }
        EXPECT_EQ(said.join(u' ').toStdString(), row.wanted) << row.status;
        QStringList recorded;
        for (const Topic &topic : json::decode<QList<Topic>>(
                 QByteArray::fromStdString(run((command + " --json").c_str()).out))) {
            recorded += topic.title;
        }
        EXPECT_EQ(recorded, said);
    }
}

TEST_F(Triage, the_program_draws_its_line_where_the_week_is_full) {
    EXPECT_THAT(run("programme").out, HasSubstr("Ton programme est vide."));
    QList<Topic> list = topics();
    list[0].minutes = 100;
    list[1].minutes = 90;
    list[1].score = 6;
    save(list);
    EXPECT_EQ(run("trier AB22 garder").status, 0);
    EXPECT_THAT(run("trier AB11 garder").err, Not(HasSubstr("sous la ligne")));
    const Outcome shown = run("programme");
    const auto line = shown.out.find("──");
    EXPECT_LT(shown.out.find("AB11"), line);
    EXPECT_GT(shown.out.find("AB22"), line);
    const QJsonObject figures =
        QJsonDocument::fromJson(QByteArray::fromStdString(run("programme --json").out)).object();
    EXPECT_EQ(figures[u"budget"].toInt(), 180);
    EXPECT_EQ(figures[u"planned"].toInt(), 100);
    EXPECT_EQ(figures[u"waits"].toArray().size(), 1);
    EXPECT_EQ(figures[u"state"].toString(), u"inProgress");
    EXPECT_EQ(run("trier AB11 fait").status, 0);
    EXPECT_EQ(run("trier AB22 retirer").status, 0);
    EXPECT_THAT(run("trier AB22 garder").err, HasSubstr("il attend sous la ligne"));
    EXPECT_EQ(run("trier AB22 pas-pour-moi").status, 0);
    EXPECT_THAT(run("programme").out, HasSubstr("Programme fini, il te reste 1\u00A0h\u00A020"));
}

/// A terminal with a person at it: what the program shows is read, keys are typed.
class Terminal {
public:
    Terminal() : m_person(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
        grantpt(m_person);
        unlockpt(m_person);
        m_name = QString::fromLocal8Bit(ptsname(m_person));
        m_held = ::open(ptsname(m_person), O_RDWR | O_NOCTTY);
    }
    ~Terminal() {
        ::close(m_held);
        ::close(m_person);
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    void attach(QProcess &process) const {
        process.setStandardInputFile(m_name);
        process.setStandardOutputFile(m_name, QIODevice::Append);
        process.setStandardErrorFile(m_name, QIODevice::Append);
    }
    /// Waits for the text to be shown, after what was awaited before, then types.
    void answer(const char *text, const char *typed) {
        test::spinUntil([&] { return !shown(text).isEmpty(); });
        m_from = m_shown.indexOf(text, m_from) + qsizetype(qstrlen(text));
        [[maybe_unused]] const auto written = ::write(m_person, typed, qstrlen(typed));
    }
    QByteArray shown(const char *text) {
        std::array<char, 4096> bytes{};
        for (ssize_t count = 0; (count = ::read(m_person, bytes.data(), bytes.size())) > 0;) {
            m_shown.append(bytes.data(), count);
        }
        return m_shown.indexOf(text, m_from) < 0 ? QByteArray() : m_shown;
    }

private:
    int m_person;
    int m_held; // keeps the terminal alive between programs
    QString m_name;
    QByteArray m_shown;
    qsizetype m_from = 0;
};

TEST_F(Triage, calibration_asks_at_a_terminal_and_goes_on_where_it_was_left) {
    Terminal terminal;
    const auto start = [&](const QStringList &arguments) {
        auto process = prepare(arguments);
        terminal.attach(*process);
        process->start();
        return process;
    };
    const auto end = [](QProcess &process) {
        test::spinUntil([&] { return process.state() == QProcess::NotRunning; });
        return process.exitCode();
    };
    auto process = start({QStringLiteral("calibrer")});
    terminal.answer("Arrêter", "\x1B[A\x1B[3~éz X"); // what is no answer is passed over
    terminal.answer("de 0 à 10", "onze\n");
    terminal.answer("nombre entier", "2\n");
    terminal.answer("J’avais mis 7.", "");
    terminal.answer("Annuler", "a");
    terminal.answer("Réponse annulée.", "");
    terminal.answer("Arrêter", "l");
    terminal.answer("de 0 à 10", "\n");
    terminal.answer("2 sur 2", "");
    terminal.answer("Arrêter", "q");
    EXPECT_EQ(end(*process), 0);
    EXPECT_EQ(topics()[0].status, TopicStatus::Reserve);
    EXPECT_FALSE(topics()[0].correction) << "what was taken back left nothing";
    EXPECT_EQ(run("reglages calibrated").out, "false\n");

    process = start({QStringLiteral("calibrer")});
    terminal.answer("2 sur 2", "");
    terminal.answer("Arrêter", "g");
    terminal.answer("de 0 à 10", "7\n");
    terminal.answer("C’est noté.", "");
    EXPECT_EQ(end(*process), 0);
    EXPECT_EQ(topics()[1].status, TopicStatus::Program);
    EXPECT_EQ(topics()[1].correction->score, 7);
    EXPECT_EQ(run("reglages calibrated").out, "true\n");
    process = start({QStringLiteral("calibrer")});
    terminal.answer("C’est déjà fait.", "");
    EXPECT_EQ(end(*process), 0);

    // Taken again an hour later, what was answered before does not count.
    QList<Topic> list = topics();
    for (Topic &topic : list) {
        topic.triagedAt = topic.triagedAt->addSecs(-3600);
    }
    list[0].status = TopicStatus::Inbox;
    save(list);
    process = start({QStringLiteral("calibrer"), QStringLiteral("--reprendre")});
    terminal.answer("1 sur 1", "");
    terminal.answer("Arrêter", "g");
    terminal.answer("de 0 à 10", "");
    ::kill(static_cast<pid_t>(process->processId()), SIGINT);
    EXPECT_EQ(end(*process), 0);
    EXPECT_EQ(topics()[0].status, TopicStatus::Program) << "the choice was taken, the score is not";
    EXPECT_EQ(run("calibrer --passer").status, 0);
    EXPECT_EQ(run("reglages calibrated").out, "true\n");
}

TEST_F(Triage, calibration_tells_machines_how_far_it_is_and_asks_nothing) {
    const auto state = [&](const char *words) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return QJsonDocument::fromJson(QByteArray::fromStdString(outcome.out)).object();
    };
    EXPECT_EQ(state("calibrer --json")[u"underWay"], false);
    const QJsonObject begun = state("calibrer --reprendre --json");
    EXPECT_EQ(begun[u"underWay"], true);
    EXPECT_EQ(begun[u"answered"], 0);
    EXPECT_EQ(begun[u"total"], 2);
    EXPECT_TRUE(begun[u"next"].toObject().contains(u"title"));
    EXPECT_EQ(state("calibrer --passer --json")[u"calibrated"], true);
}

TEST_F(Triage, an_opened_topic_tells_what_stood_behind_its_score) {
    ScoreProvenance note;
    note.topic = QUuid(QString::fromLatin1(first));
    note.at = QDateTime(QDate(2026, 11, 2), QTime(9, 0), Qt::UTC);
    note.agent = QStringLiteral("claude");
    note.relevance = 6.8;
    note.reflexes = {{QStringLiteral("long-later"),
                      QStringLiteral("Les sujets longs attendent\u001B[2J un créneau.")}};
    test::writeFile(folder.filePath(QStringLiteral("score-notes.json")), json::encode(QList{note}));
    const Outcome open = run("sujets AB11");
    EXPECT_EQ(open.status, 0);
    EXPECT_THAT(open.out, HasSubstr("Claude Code, le 2 novembre"));
    EXPECT_THAT(open.out, HasSubstr("6,8, arrondi à 7"));
    EXPECT_THAT(open.out, HasSubstr("Les sujets longs attendent"));
    EXPECT_THAT(open.out, Not(HasSubstr("\x1B"))) << "no text commands the terminal";
    EXPECT_THAT(run("sujets AB22").out, Not(HasSubstr("Jugé par")));
    const auto shown =
        QJsonDocument::fromJson(QByteArray::fromStdString(run("sujets AB11 --json").out)).object();
    EXPECT_EQ(shown[u"scoreNote"].toObject()[u"agent"].toString(), u"claude");
    EXPECT_EQ(shown[u"title"].toString(), u"AB11");
}

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
    ScoreProvenance note;
    note.at = QDateTime(QDate(2026, 11, 1), QTime(23, 30), Qt::UTC);
    note.agent = QStringLiteral("codex");
    note.relevance = 7.46;
    note.bytesRead = 5432;
    note.examples = 12;
    note.reflexes = {{QStringLiteral("stack-first"), QStringLiteral("La stack passe avant.")},
                     {QStringLiteral("kind-video"), QString()}};
    const ScoreExplanation open = openScore(topic, note, today, QTimeZone("Europe/Paris"));
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
    EXPECT_EQ(openScore(topic, note, today).title,
              QStringLiteral("Pas de note : rien n’a pu être lu"));
}

} // namespace
} // namespace vorle
