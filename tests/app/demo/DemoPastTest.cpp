// The demonstration's past: whatever day it is shown on, the report, the reflexes and the library
// have something to tell, and it all agrees.

#include "core/DemoPast.h"
#include "app/demo/DemoCatalogue.h"
#include "app/demo/Demonstration.h"
#include "app/report/FigureSentences.h"
#include "base/Resources.h"
#include "core/EngineImport.h"
#include "core/Preferences.h"
#include "core/WeekProgram.h"
#include "judging/Learning.h"
#include "search/web/SourceImage.h"
#include "tests/core/Samples.h"
#include "tests/support/Variables.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace vorle {
namespace {

QByteArray resource(const char *name) {
    return Resources().data(QString::fromLatin1(name), QStringLiteral("json")).value();
}

/// The past as it would be seen at that moment, with twelve topics to sort.
DemoPast seenAt(const QDateTime &now, const QLocale &locale, const QTimeZone &zone) {
    return demoPast(
        resource("demo-history"),
        importTopics(resource("search-tiravue-2026-10-26"), QStringLiteral("Tiravue"), now), now,
        locale, zone);
}

QList<TopicPtr> shared(const QList<Topic> &topics) {
    QList<TopicPtr> out;
    for (const Topic &topic : topics) {
        out += std::make_shared<const Topic>(topic);
    }
    return out;
}

/// What the report says where it has nothing to tell.
bool isFallback(const QString &sentence) {
    static const QStringList words{
        QStringLiteral("Rien de trouvé"),   QStringLiteral("gardé aucun"),
        QStringLiteral("attendent encore"), QStringLiteral("Pas encore"),
        QStringLiteral("Pas de veille"),    QStringLiteral("aucune semaine"),
        QStringLiteral("Rien n’a eu"),      QStringLiteral("rien n’a eu"),
        QStringLiteral("Aucune fouille"),   QStringLiteral("aucune de mes notes")};
    return sentence.isEmpty() ||
           std::ranges::any_of(words, [&](const QString &word) { return sentence.contains(word); });
}

QStringList sentencesOf(const WatchFigures &figures) {
    QStringList all{foundSentence(figures),   timeSentence(figures), scoresSentence(figures),
                    sourcesSentence(figures), runsSentence(figures), correctionsSentence(figures)};
    if (figures.kind != PeriodKind::Week) { // a week is too short to weigh the reflexes
        all += reflexesSentence(figures);
    }
    return all;
}

/// Holds what must be true of each moment the past tells, at any hour of any day.
void expectPast(const DemoPast &past, const QDateTime &now) {
    for (const Topic &topic : past.topics) {
        const QDateTime triaged = topic.triagedAt.value_or(now);
        const QDateTime done = topic.doneAt.value_or(now);
        EXPECT_TRUE(topic.foundAt <= triaged && triaged <= done && done <= now)
            << topic.title.toStdString() << now.toString(Qt::ISODate).toStdString();
        EXPECT_LE(topic.publishedOn.value_or(QString()), now.date().toString(Qt::ISODate));
    }
    for (qsizetype i = 1; i < past.runs.size(); ++i) {
        EXPECT_LE(past.runs[i - 1].date, past.runs[i].date);
    }
    EXPECT_LE(past.runs.last().date, now);
}

TEST(DemoPastTest, the_report_has_something_to_say_at_any_hour_of_any_day_and_anywhere) {
    const struct {
        QLocale locale;
        const char *zone;
    } places[] = {{QLocale(QLocale::French, QLocale::France), "Europe/Paris"},
                  {QLocale(QLocale::English, QLocale::UnitedStates), "America/New_York"}};
    for (const auto &[locale, zoneName] : places) {
        const QTimeZone zone(zoneName);
        QSet<QString> runHours;
        for (int day = 0; day < 7; ++day) {
            for (const QTime hour : {QTime(0, 0, 30), QTime(8, 2), QTime(23, 59)}) {
                const QDateTime now =
                    QDateTime(QDate(2027, 3, 26).addDays(day), hour, zone).toUTC();
                const DemoPast past = seenAt(now, locale, zone);
                expectPast(past, now);
                runHours +=
                    past.runs.first().date.toTimeZone(zone).toString(QStringLiteral("ddd HH:mm"));
                QHash<QUuid, qsizetype> reflexes;
                for (const ScoreProvenance &each : past.provenance) {
                    reflexes.insert(each.topic, each.reflexes.size());
                }
                const WatchRecords records{.topics = shared(past.topics),
                                           .reports = past.runs,
                                           .weeklyMinutes = Settings().weeklyMinutes,
                                           .reflexesOf = [&](const QUuid &id) {
                                               return reflexes.contains(id)
                                                          ? std::optional(reflexes.value(id))
                                                          : std::nullopt;
                                           }};
                for (const PeriodKind kind :
                     {PeriodKind::Week, PeriodKind::Month, PeriodKind::Year}) {
                    const auto figures = watchFigures(
                        records, reportPeriod(kind, now, 0, locale, zone), now, locale, zone);
                    EXPECT_GT(figures.runs.size(), 1);
                    for (const QString &sentence : sentencesOf(figures)) {
                        EXPECT_FALSE(isFallback(sentence))
                            << json::rawText(kind).toStdString() << ' ' << zoneName << ' '
                            << now.toString(Qt::ISODate).toStdString() << ": "
                            << sentence.toStdString();
                    }
                }
                const WeekProgram program = weekProgram(records.topics, records.weeklyMinutes,
                                                        calendarWeek(now, locale, zone));
                EXPECT_TRUE(program.done > 0 && program.fits.size() > 2 &&
                            !program.waits.isEmpty());
            }
        }
        EXPECT_EQ(runHours.size(), 1) << "a run of the past keeps its day and hour";
    }
}

TEST(DemoPastTest, opens_on_decisions_that_teach_and_agree_with_the_runs) {
    const QTemporaryDir folder;
    test::Variables variables;
    variables.set("XDG_DATA_HOME", folder.path());
    const auto demonstration = Demonstration::start();
    Preferences preferences(
        std::make_unique<SettingsFile>(demonstration->home() + QStringLiteral("/settings.json")));
    demonstration->populate(preferences);
    const SystemClock clock;
    TopicStore store(TopicStore::Kind::Demo, Resources(), clock);
    EXPECT_EQ(store.topics(TopicStatus::Inbox).size(), 12);
    EXPECT_EQ(store.topics(TopicStatus::Program).size(), 6);
    EXPECT_EQ(store.topics(TopicStatus::Reserve).size(), 10);

    QStringList learned;
    for (const Reflex &reflex : learn(store.topics(), preferences.settings()).reflexes) {
        learned += reflex.id;
    }
    EXPECT_EQ(learned, (QStringList{QStringLiteral("stack-first"), QStringLiteral("kind-video"),
                                    QStringLiteral("long-later"), QStringLiteral("project-Potager"),
                                    QStringLiteral("corr-security")}));

    const auto written = json::decode<DemoPast>(resource("demo-history")).runs;
    const QList<RunReport> counted = store.history();
    ASSERT_EQ(counted.size(), written.size());
    QSet<QUuid> brought;
    for (qsizetype i = 0; i < counted.size(); ++i) {
        const RunReport &run = counted[i];
        EXPECT_EQ(run.added, run.topicIds.size());
        for (const QUuid &id : run.topicIds) {
            EXPECT_TRUE(store.topic(id) && !brought.contains(id));
            brought += id;
        }
        QSet<QUuid> ofScopes;
        for (const ScopeReport &scope : run.scopes) {
            ofScopes.unite({scope.yield->topicIds.begin(), scope.yield->topicIds.end()});
        }
        EXPECT_EQ(ofScopes, QSet<QUuid>(run.topicIds.begin(), run.topicIds.end()));
        if (i + 1 < counted.size()) { // the last one's topics are told of when it starts
            EXPECT_EQ(run.scopes, written[i].scopes) << "the yields are counted right";
            EXPECT_EQ(run.sites, written[i].sites);
        }
    }
    ScoreProvenanceLog provenance(store, clock);
    for (const TopicPtr &topic : store.topics()) {
        EXPECT_EQ(brought.contains(topic->id), topic->origin != Origin::Capture);
        EXPECT_EQ(provenance.of(topic->id).has_value(), topic->status != TopicStatus::Inbox);
    }
}

TEST(DemoPastTest, holds_no_page_that_a_run_of_the_demonstration_finds) {
    const auto past = json::decode<DemoPast>(resource("demo-history"));
    const DemoCatalogue catalogue(QDate(2026, 11, 16));
    QSet<QString> seen;
    QSet<QUuid> ids;
    for (const Topic &topic : past.topics) {
        ids += topic.id;
        ASSERT_EQ(topic.sources.size(), 1);
        const QUrl link(topic.sources.first().url);
        EXPECT_TRUE(link.host().contains(QStringLiteral("example"))) << link.host().toStdString();
        seen += topic.sources.first().url;
        seen += topic.title;
        EXPECT_FALSE(catalogue.at(link.path())) << link.path().toStdString();
    }
    EXPECT_EQ(ids.size(), past.topics.size());
    EXPECT_EQ(seen.size(), 2 * past.topics.size());
    for (const DemoPage &page : catalogue.pages()) {
        EXPECT_FALSE(seen.contains(page.title)) << page.title.toStdString();
    }
}

TEST(DemoPastTest, its_topics_have_pictures_that_can_be_shown) {
    const QDateTime now(QDate(2026, 11, 20), QTime(9, 0), Qt::UTC);
    const DemoPast past = seenAt(now, QLocale::c(), QTimeZone::utc());
    QSet<QString> drawn;
    QSet<QString> used;
    for (const QString &name : QDir(QStringLiteral(":/vorle/demo/pictures")).entryList()) {
        QFile drawing(QStringLiteral(":/vorle/demo/pictures/") + name);
        ASSERT_TRUE(drawing.open(QIODevice::ReadOnly));
        const QByteArray bytes = drawing.readAll();
        EXPECT_TRUE(SourceImage::keeps(bytes)) << name.toStdString();
        EXPECT_LT(bytes.size(), 20'000) << name.toStdString();
        drawn += demoPictureFile(QFileInfo(name).baseName());
    }
    qsizetype pictures = 0;
    for (const Topic &topic : past.topics) {
        pictures += topic.gallery.size();
        for (const Picture &picture : topic.gallery) {
            used += picture.file;
        }
    }
    EXPECT_EQ(used, drawn);
    EXPECT_EQ(pictures, past.pictures.size()) << "each belongs to a topic";
}

} // namespace
} // namespace vorle
