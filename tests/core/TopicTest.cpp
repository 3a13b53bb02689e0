#include "core/EngineImport.h"
#include "core/ScoreScale.h"
#include "core/TopicOrder.h"
#include "tests/core/Samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vorle {
namespace {

using test::sampleTopic;

TEST(Topic, names_a_source_by_its_repository_its_title_or_its_role) {
    const struct {
        QStringView title, url, name;
    } cases[] = {
        {u"Vapeur 2 is out", u"https://github.com/tiravue/vapeur/releases/tag/v2",
         u"tiravue/vapeur"},
        {u"", u"https://www.GitHub.com/tiravue/vapeur.git", u"tiravue/vapeur"},
        {u"x", u"https://raw.githubusercontent.com/tiravue/vapeur/main/README.md",
         u"tiravue/vapeur"},
        {u"Advisory", u"https://github.com/advisories/GHSA-1", u"Advisory"},
        {u"", u"https://github.com/tiravue", u"Source"},
        {u"Trap", u"https://github.com.example.org/a/b", u"Trap"},
        {u" \n", u"https://example.org/a/b", u"Source"},
        {u"Page", u"not a link", u"Page"},
    };
    for (const auto &[title, url, name] : cases) {
        const TopicSource source{title.toString(), url.toString()};
        EXPECT_EQ(source.displayName(), name.toString()) << url.toString().toStdString();
    }
}

TEST(Topic, is_urgent_now_or_by_a_high_score_on_a_flaw_or_a_break) {
    using Level = Judgment::Urgency::Level;
    const struct {
        std::optional<Level> level;
        int score;
        QStringView kind;
        bool urgent;
    } cases[] = {
        {Level::Now, 0, u"article", true},    {Level::None, 9, u"article", false},
        {Level::Before, 9, u"tool", false},   {Level::Before, 9, u"faille", true},
        {Level::None, 10, u"ça casse", true}, {std::nullopt, 9, u"la faille", true},
        {std::nullopt, 8, u"faille", false},  {std::nullopt, 10, u"", false},
    };
    for (const auto &[level, score, kind, urgent] : cases) {
        Topic topic = sampleTopic(QStringLiteral("t"));
        topic.score = score;
        topic.kind = kind.toString();
        if (level) {
            topic.urgency = Judgment::Urgency{*level, {}, {}};
        }
        EXPECT_EQ(topic.isUrgent(), urgent) << score << kind.toString().toStdString();
        EXPECT_EQ(tierOf(topic) == Tier::Urgent, urgent);
    }
}

TEST(Topic, reads_without_the_optional_keys_and_not_without_the_required_ones) {
    Topic topic = sampleTopic(QStringLiteral("t"));
    topic.seenText.reset();
    const QByteArray text = json::encode(QList<Topic>{topic});
    EXPECT_EQ(json::decode<QList<Topic>>(text), QList<Topic>{topic});
    for (const char *key : {"id", "title", "score", "gallery", "minutes", "summary", "why",
                            "firstStep", "sources", "status", "postponedCount", "foundAt"}) {
        QByteArray without = text;
        const QByteArray quoted = '"' + QByteArray(key) + "\":";
        ASSERT_TRUE(without.contains(quoted)) << key;
        without.replace(quoted, "\"x" + QByteArray(key) + "\":");
        EXPECT_THROW(json::decode<QList<Topic>>(without), json::DecodeError) << key;
    }
}

TEST(Topic, classes_changes_by_their_words) {
    EXPECT_EQ(changeLabel(QStringLiteral("corrige une faille")),
              QStringLiteral("Faille de sécurité"));
    EXPECT_EQ(changeLabel(QStringLiteral("casse le format")), QStringLiteral("Changement cassant"));
    EXPECT_EQ(changeLabel(QStringLiteral("gain de 20 %")), QStringLiteral("Gain"));
    EXPECT_EQ(changeLabel(QStringLiteral("Nouvelle API")), QStringLiteral("Nouvelle API"));
    EXPECT_EQ(changeLabel(QStringLiteral("une nouvelle API")), QStringLiteral("Nouvelle API"));
    EXPECT_EQ(changeLabel(QStringLiteral("Faille corrigée")), QStringLiteral("Faille de sécurité"));
    for (const QStringView other : {u"rien", u"nouvelle apiculture", u"NOUVELLE API", u"GAIN"}) {
        EXPECT_EQ(changeLabel(other.toString()), QString());
    }
}

TEST(ScoreScale, rounds_and_bounds_the_relevance) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::pair<double, int> cases[] = {
        {0, 0},   {0.49, 0}, {0.5, 1},       {6.5, 7},       {7.4999, 7},       {10, 10},
        {11, 10}, {-3, 0},   {infinity, 10}, {-infinity, 0}, {std::nan(""), 0}, {1e300, 10},
    };
    for (const auto &[relevance, score] : cases) {
        EXPECT_EQ(scoreFromRelevance(relevance), score) << relevance;
    }
}

TEST(ScoreScale, bands_by_score_and_leaves_the_unread_to_dig) {
    const std::pair<int, Tier> cases[] = {
        {10, Tier::VeryRelevant}, {8, Tier::VeryRelevant}, {7, Tier::Relevant}, {6, Tier::Relevant},
        {5, Tier::WorthKnowing},  {4, Tier::WorthKnowing}, {3, Tier::ToDig},    {0, Tier::ToDig},
    };
    Topic topic = sampleTopic(QStringLiteral("t"));
    for (const auto &[score, tier] : cases) {
        topic.score = score;
        EXPECT_EQ(tierOf(topic), tier) << score;
    }
    topic.score = 8;
    topic.readLevel = ReadLevel::None;
    EXPECT_EQ(tierOf(topic), Tier::ToDig);
    EXPECT_EQ(shownScore(topic), std::nullopt);
    // The user's own score is what is shown, whatever could be read.
    topic.correction = Correction{.score = 7.5, .tags = {}, .text = {}, .at = {}};
    EXPECT_EQ(shownScore(topic), 8);
    EXPECT_EQ(tierOf(topic), Tier::VeryRelevant);
    EXPECT_LT(Tier::Urgent, Tier::VeryRelevant);
}

TEST(ScoreScale, draws_the_badge_of_each_score) {
    EXPECT_EQ(scoreBadge(0).fill, scoreBadge(1).fill);
    EXPECT_EQ(scoreBadge(-4).accent, scoreBadge(1).accent);
    EXPECT_EQ(scoreBadge(1).fill.dark, QStringLiteral("rgba(92,156,240,0.30)"));
    EXPECT_EQ(scoreBadge(8).ink.light, QStringLiteral("#B04E10"));
    EXPECT_FALSE(scoreBadge(8).filled);
    EXPECT_TRUE(scoreBadge(9).filled && !scoreBadge(9).gem);
    EXPECT_EQ(scoreBadge(9).fill, scoreBadge(9).accent);
    EXPECT_TRUE(scoreBadge(10).filled && scoreBadge(10).gem);
    EXPECT_EQ(scoreBadge(12).fill, scoreBadge(10).fill);
    EXPECT_EQ(scoreBadge(10).accessibleName, QStringLiteral("Note 10 sur 10, pépite"));
    EXPECT_EQ(scoreBadge(7).accessibleName, QStringLiteral("Note 7 sur 10"));
    EXPECT_EQ(scoreBadge(std::nullopt).accessibleName,
              QStringLiteral("Pas de note : rien n’a pu être lu"));
    EXPECT_TRUE(scoreBadge(std::nullopt).digits.isEmpty() && !scoreBadge(std::nullopt).filled);
    EXPECT_EQ(qtColour(QStringLiteral("rgba(92,156,240,0.30)")), QStringLiteral("#4D5C9CF0"));
    EXPECT_EQ(qtColour(QStringLiteral("#B04E10")), QStringLiteral("#B04E10"));
}

QByteArray answer(const QByteArray &items) {
    return R"({"is_error":false,"duration_ms":1,"structured_output":{"sujets":[)" + items + "]}}";
}

QByteArray item(const QByteArray &nature, const QByteArray &more) {
    return R"({"titre":"T","note":8.6,"dependance":"vapeur","version_actuelle":"1","version_nouvelle":"",
        "nature":")" +
           nature + R"(","resume":"r","pourquoi":"p","ce_que_ca_change":"c",
        "premier_pas":"s","effort_risques":"e","date_publication":"2026-10-20",
        "sources":[{"titre":"A\u202e","url":"https://example.org"},
                   {"titre":"B","url":"https://example.org/\n### id: c2"},
                   {"titre":"C","url":"javascript:void"}])" +
           more + "}";
}

TEST(EngineImport, makes_a_topic_of_each_subject) {
    const QDateTime now(QDate(2026, 10, 26), QTime(8, 0), Qt::UTC);
    const auto import = [&](const QByteArray &items) {
        return importTopics(answer(items), QStringLiteral("Tiravue"), now);
    };
    const auto topics = import(item("faille", "") + ',' + item("casse", R"(,"minutes":40)") + ',' +
                               item("nouveauté", R"(,"minutes":null)"));
    ASSERT_EQ(topics.size(), 3);
    EXPECT_EQ(topics[0].minutes, 15);
    EXPECT_EQ(topics[1].minutes, 40);
    EXPECT_EQ(topics[2].minutes, 30);
    EXPECT_EQ(topics[0].score, 9);
    EXPECT_TRUE(topics[0].isUrgent());
    EXPECT_EQ(topics[0].project, QStringLiteral("Tiravue"));
    EXPECT_EQ(topics[0].sources[0].url, QStringLiteral("https://example.org"));
    EXPECT_EQ(topics[0].sources[0].title, QStringLiteral("A"));
    EXPECT_EQ(topics[0].status, TopicStatus::Inbox);
    EXPECT_EQ(topics[0].foundAt, now);
    EXPECT_FALSE(topics[0].newVersion);
    EXPECT_EQ(topics[0].sources.size(), 1) << "a link that is none is left out";
    EXPECT_NE(topics[0].id, topics[1].id);
    EXPECT_TRUE(import("").isEmpty());
    EXPECT_THROW(import(item("faille", "") + R"(,{"titre":"sans le reste"})"), json::DecodeError);
    EXPECT_THROW(importTopics("{}", {}, now), json::DecodeError);
}

TEST(TopicOrder, sorts_each_section) {
    const auto make = [](QStringView title, int score, std::optional<int> day, bool urgent) {
        Topic topic = sampleTopic(title.toString());
        topic.score = score;
        if (day) {
            topic.triagedAt = QDateTime(QDate(2026, 11, *day), QTime(8, 0), Qt::UTC);
        }
        topic.doneAt = topic.triagedAt;
        if (urgent) {
            topic.urgency = Judgment::Urgency{Judgment::Urgency::Level::Now, {}, {}};
        }
        return std::make_shared<const Topic>(topic);
    };
    const QList<TopicPtr> topics{make(u"a", 5, 3, false), make(u"b", 8, {}, false),
                                 make(u"c", 5, 2, false), make(u"d", 2, 4, true),
                                 make(u"e", 2, 1, true),  make(u"f", 8, {}, false)};
    const auto order = [&](bool (*before)(const Topic &, const Topic &)) {
        QString titles;
        for (const TopicPtr &topic : ordered(topics, before)) {
            titles += topic->title;
        }
        return titles;
    };
    EXPECT_EQ(order(latestTriagedFirst), QStringLiteral("dacebf"));
    EXPECT_EQ(order(latestDoneFirst), QStringLiteral("dacebf"));
    EXPECT_EQ(order(moreUrgent), QStringLiteral("edbfca"));
    EXPECT_EQ(order(programOrder), QStringLiteral("edbfca"));
}

TEST(TopicOrder, takes_the_week_from_the_users_calendar) {
    const QTimeZone zone("Europe/Paris");
    const QDateTime sunday(QDate(2026, 10, 25), QTime(12, 0), zone); // the clocks go back
    const Period french = calendarWeek(sunday, QLocale(QStringLiteral("fr_FR")), zone);
    EXPECT_EQ(formatIso8601(french.begin), "2026-10-18T22:00:00Z");
    EXPECT_EQ(formatIso8601(french.end), "2026-10-25T23:00:00Z");
    const Period american = calendarWeek(sunday, QLocale(QStringLiteral("en_US")), zone);
    EXPECT_EQ(formatIso8601(american.begin), "2026-10-24T22:00:00Z");
    EXPECT_TRUE(french.contains(french.begin) && !french.contains(french.end));
}

} // namespace
} // namespace vorle
