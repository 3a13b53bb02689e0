// What follows the search, run as a person runs it: vorle sujets ID, trier, corriger, programme.

#include "core/ScoreProvenanceLog.h"
#include "tests/app/cli/TwoTopics.h"

#include <QJsonArray>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;
using testing::Not;

class Triage : public test::TwoTopics {};

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
        const Program::Outcome outcome =
            vorle.run(QStringList{QStringLiteral("trier"), QStringLiteral("ab1")} +
                      Program::parted(step.action));
        EXPECT_EQ(outcome.status, 0) << step.action << outcome.err;
        EXPECT_THAT(outcome.out, HasSubstr(step.said));
        EXPECT_EQ(vorle.topics()[0].status, step.status);
    }
    EXPECT_EQ(vorle.topics()[0].postponedCount, 2);
    EXPECT_EQ(vorle.topics()[1].status, TopicStatus::Inbox);

    // Taken twice, it counts once.
    const Topic before = vorle.topics()[0];
    EXPECT_EQ(vorle.run("trier AB11 fait").status, 0);
    EXPECT_EQ(vorle.topics()[0], before);

    const Program::Outcome shown =
        vorle.run("trier {ab220000-0000-4000-8000-000000000002} garder --json");
    EXPECT_EQ(json::decode<Topic>(shown.bytes()), vorle.topics()[1]);
}

TEST_F(Triage, what_cannot_be_done_is_told_in_french_and_changes_nothing) {
    QList<Topic> list = vorle.topics();
    Topic captured = test::sampleTopic(QStringLiteral("capturé"), TopicStatus::Pending);
    captured.id = QUuid(QStringLiteral("CD330000-0000-4000-8000-000000000003"));
    captured.capturedURL = QStringLiteral("https://example.org/");
    captured.readLevel = ReadLevel::None;
    captured.criteria.reset();
    list += captured;
    captured.id = QUuid(QStringLiteral("CE440000-0000-4000-8000-000000000004"));
    captured.status = TopicStatus::Dismissed;
    list += captured;
    vorle.save(list);
    const QByteArray before = test::readFile(vorle.topicsFile());
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
        const Program::Outcome outcome = vorle.run(one.words);
        EXPECT_EQ(outcome.status, one.status) << one.words;
        EXPECT_THAT(
            QString::fromStdString(outcome.err).replace(QChar(QChar::Nbsp), u' ').toStdString(),
            HasSubstr(one.text))
            << one.words;
        EXPECT_TRUE(outcome.out.empty()) << outcome.out;
    }
    EXPECT_EQ(test::readFile(vorle.topicsFile()), before);
    EXPECT_EQ(vorle.run("reglages calibrationStart").out, "null\n");

    test::writeFile(vorle.topicsFile(), "{}");
    for (const char *command : {"trier AB11 garder", "corriger AB11 5", "programme", "sujets AB"}) {
        const Program::Outcome outcome = vorle.run(command);
        EXPECT_EQ(outcome.status, 1) << command;
        EXPECT_THAT(outcome.err, HasSubstr("illisibles"));
    }
    EXPECT_EQ(test::readFile(vorle.topicsFile()), "{}");
}

TEST_F(Triage, a_correction_shows_the_users_score_with_the_former_one) {
    const Program::Outcome made =
        vorle.run(Program::parted("corriger ab11 9 --raison fiable,domaine --texte") +
                  QStringList{QStringLiteral("lu ailleurs")});
    EXPECT_THAT(made.out, HasSubstr("Note 9 sur 10, j’avais mis 7"));
    const Correction kept = vorle.topics()[0].correction.value_or(Correction());
    EXPECT_EQ(kept.score, 9);
    EXPECT_EQ(kept.tags, (QList<QString>{QStringLiteral("hors de mon domaine"),
                                         QStringLiteral("pas fiable")}));
    EXPECT_EQ(vorle.topics()[0].score, 7) << "the app's own score stays";

    const Program::Outcome open = vorle.run("sujets AB11");
    EXPECT_THAT(open.out, HasSubstr("   9  AB11"));
    EXPECT_THAT(open.out, HasSubstr("J’avais mis 7"));
    EXPECT_THAT(open.out, HasSubstr("pas fiable"));

    EXPECT_THAT(vorle.run("corriger AB11 --retirer").out, HasSubstr("Note 7 sur 10, la mienne"));
    EXPECT_FALSE(vorle.topics()[0].correction);
    EXPECT_EQ(vorle.run("corriger AB11 --retirer").status, 0);
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
    vorle.save(list);
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
        for (const QString &line :
             QString::fromStdString(vorle.run(command.c_str()).out).split(u'\n')) {
            if (const QStringList parts = line.simplified().split(u' '); parts.size() > 1) {
                said += parts[1];
            }
        }
        EXPECT_EQ(said.join(u' ').toStdString(), row.wanted) << row.status;
        QStringList recorded;
        for (const Topic &topic :
             json::decode<QList<Topic>>(vorle.run((command + " --json").c_str()).bytes())) {
            recorded += topic.title;
        }
        EXPECT_EQ(recorded, said);
    }
}

TEST_F(Triage, the_program_draws_its_line_where_the_week_is_full) {
    EXPECT_THAT(vorle.run("programme").out, HasSubstr("Ton programme est vide."));
    QList<Topic> list = vorle.topics();
    list[0].minutes = 100;
    list[1].minutes = 90;
    list[1].score = 6;
    vorle.save(list);
    EXPECT_EQ(vorle.run("trier AB22 garder").status, 0);
    EXPECT_THAT(vorle.run("trier AB11 garder").err, Not(HasSubstr("sous la ligne")));
    const Program::Outcome shown = vorle.run("programme");
    const auto line = shown.out.find("──");
    EXPECT_LT(shown.out.find("AB11"), line);
    EXPECT_GT(shown.out.find("AB22"), line);
    const QJsonObject figures = vorle.run("programme --json").object();
    EXPECT_EQ(figures[u"budget"].toInt(), 180);
    EXPECT_EQ(figures[u"planned"].toInt(), 100);
    EXPECT_EQ(figures[u"waits"].toArray().size(), 1);
    EXPECT_EQ(figures[u"state"].toString(), u"inProgress");
    EXPECT_EQ(vorle.run("trier AB11 fait").status, 0);
    EXPECT_EQ(vorle.run("trier AB22 retirer").status, 0);
    EXPECT_THAT(vorle.run("trier AB22 garder").err, HasSubstr("il attend sous la ligne"));
    EXPECT_EQ(vorle.run("trier AB22 pas-pour-moi").status, 0);
    EXPECT_THAT(vorle.run("programme").out,
                HasSubstr("Programme fini, il te reste 1\u00A0h\u00A020"));
}

TEST_F(Triage, an_opened_topic_tells_what_stood_behind_its_score) {
    ScoreProvenance provenance;
    provenance.topic = vorle.topics()[0].id;
    provenance.at = QDateTime(QDate(2026, 11, 2), QTime(9, 0), Qt::UTC);
    provenance.agent = QStringLiteral("claude");
    provenance.relevance = 6.8;
    provenance.reflexes = {{QStringLiteral("long-later"),
                            QStringLiteral("Les sujets longs attendent\u001B[2J un créneau.")}};
    vorle.write("data/vorle/score-notes.json", json::encode(QList{provenance}));
    const Program::Outcome open = vorle.run("sujets AB11");
    EXPECT_EQ(open.status, 0);
    EXPECT_THAT(open.out, HasSubstr("Claude Code, le 2 novembre"));
    EXPECT_THAT(open.out, HasSubstr("6,8, arrondi à 7"));
    EXPECT_THAT(open.out, HasSubstr("Les sujets longs attendent"));
    EXPECT_THAT(open.out, Not(HasSubstr("\x1B"))) << "no text commands the terminal";
    EXPECT_THAT(vorle.run("sujets AB22").out, Not(HasSubstr("Jugé par")));
    const auto shown = vorle.run("sujets AB11 --json").object();
    EXPECT_EQ(shown[u"scoreNote"].toObject()[u"agent"].toString(), u"claude");
    EXPECT_EQ(shown[u"title"].toString(), u"AB11");
}

} // namespace
} // namespace vorle
