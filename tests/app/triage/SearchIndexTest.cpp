#include "app/triage/SearchIndex.h"
#include "app/triage/SearchFold.h"
#include "app/triage/SearchNear.h"
#include "tests/core/Samples.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::sampleTopic;
using test::text;

TEST(SearchFold, leaves_out_what_a_searcher_leaves_out) {
    const std::pair<const char *, const char *> cases[] = {
        {"Cœur d’Élève", "coeur d'eleve"},
        {"ÆØŁß", "aeolss"},
        {"e\xCC\x81t\xC3\xA9", "ete"}, // an accent of its own
        {"a\u00A0b\tc", "a b c"},
        {"ﬁn Ｗ", "fin w"},
        {"日本 😀 Ж", "日本 😀 ж"},
        {"Việt", "viet"},
        {"soft\u00ADhyphen", "softhyphen"},
        {"\xFF\xC3", "\xFF\xC3"}, // no UTF-8: kept
        {"", ""},
    };
    for (const auto &[before, after] : cases) {
        EXPECT_EQ(foldedForSearch(QByteArrayView(before)), after) << before;
    }
    const QByteArray original = "Cœur d’Élève";
    EXPECT_EQ(unfoldedOffset(original, 0), 0);
    EXPECT_EQ(original.sliced(unfoldedOffset(original, 8)), "Élève");
    EXPECT_EQ(unfoldedOffset(original, 999), original.size());
}

/// Topics with one text each, found in the order given.
class SearchIndexTest : public testing::Test {
protected:
    Topic &add(const char *title) {
        Topic topic = sampleTopic(text(title));
        topic.summary.clear();
        topic.seenText.reset();
        topic.sources.clear();
        topic.foundAt = topic.foundAt.addSecs(static_cast<qint64>(topics.size()));
        topics.push_back(std::make_shared<Topic>(std::move(topic)));
        return *topics.back();
    }
    QString found(const char *query) const {
        QStringList titles;
        for (const SearchHit &hit : answer(query).hits) {
            titles += hit.topic->title;
        }
        return titles.join(u' ');
    }
    SearchAnswer answer(const char *query, std::optional<TopicSection> section = {},
                        const char *rest = "") const {
        return searched(indexed({}, {topics.begin(), topics.end()}),
                        {text(query), section, text(rest)});
    }
    std::vector<std::shared_ptr<Topic>> topics;
};

TEST_F(SearchIndexTest, ranks_by_where_the_words_stand) {
    add("text").seenText = "Le cache de Vite";
    add("note").note = text("vite !");
    add("gist").why = text("Parce que Vite");
    add("inside").summary = text("invite");
    add("Vite");
    add("Invitée");
    add("later").seenText = "vite";
    add("dismissed-vite").status = TopicStatus::Dismissed;
    add("pending-vite").status = TopicStatus::Pending;
    Brief brief;
    brief.details = {{text("Détail"), text("Vite en détail")}};
    add("brief").brief = brief;
    EXPECT_EQ(found("vite"), text("Vite Invitée gist inside brief note later text dismissed-vite"));
    EXPECT_EQ(found("VITÉ cache"), text("text"));
    EXPECT_EQ(found("détail vite"), text("brief"));
    EXPECT_EQ(found("vite absent"), QString());
    EXPECT_EQ(found("  "), QString());
}

TEST_F(SearchIndexTest, shows_where_it_was_found_without_trusting_the_text) {
    add("page").seenText = "mot " + QByteArray("é ").repeated(200) + "<img> d’Œuvre & fin " +
                           QByteArray("suite ").repeated(100);
    add("Œuvre").summary = text("Le résumé.");
    const SearchIndex index = indexed({}, {topics.begin(), topics.end()});
    const auto hits = answer("oeuvre").hits;
    ASSERT_EQ(hits.size(), 2);
    EXPECT_EQ(hits[0].snippet, text("Le résumé."));
    EXPECT_TRUE(hits[1].styled.contains(text("&lt;img&gt; d’<b>Œuvre</b> &amp; fin")))
        << hits[1].styled.toStdString();
    EXPECT_TRUE(hits[1].snippet.startsWith(text("… é")));
    EXPECT_TRUE(hits[1].snippet.endsWith(text(" …")));
    // What did not change is not made again.
    auto changed = std::make_shared<Topic>(*topics[0]);
    changed->status = TopicStatus::Reserve;
    const SearchIndex again = indexed(index, {changed, topics[1]});
    EXPECT_EQ(again[1], index[1]);
    EXPECT_EQ(again[0]->fields[SearchEntry::Seen].constData(),
              index[0]->fields[SearchEntry::Seen].constData());
    EXPECT_EQ(again[0]->topic, changed);
}

TEST_F(SearchIndexTest, gives_fifty_at_most_the_newest_first_and_counts_them_all) {
    for (int i = 0; i < 60; ++i) {
        add("same").note = QString::number(i);
    }
    const SearchAnswer found = answer("same");
    ASSERT_EQ(found.hits.size(), maxHits);
    EXPECT_EQ(found.total, 60);
    EXPECT_EQ(found.hits.first().topic->note, text("59"));
}

TEST_F(SearchIndexTest, has_whole_words_before_begun_ones_and_those_that_look_alike_last) {
    add("Réactivité");
    add("preact");
    add("React-Native");
    add("page").summary = text("react");
    EXPECT_EQ(found("react"), text("React-Native Réactivité preact page"));
    // In any order; a slip of the hand is forgiven, also beside a word that is right.
    add("Une galerie de photographies");
    for (const char *typed :
         {"photo galerie", "galrie photo", "photogarphie", "phtgrphs", "GALERIES"}) {
        EXPECT_EQ(found(typed), text("Une galerie de photographies")) << typed;
    }
    EXPECT_EQ(found("galerie absente"), QString());
    EXPECT_EQ(found("phx"), QString()) << "three letters are taken as they are";
}

TEST_F(SearchIndexTest, looks_for_what_is_near_only_where_little_is_found) {
    add("Un site");
    for (int i = 0; i < 5; ++i) {
        add("vite");
    }
    EXPECT_EQ(answer("vite").total, 5);
    add("vide");
    EXPECT_EQ(answer("vite").total, 6) << "five are few";
    EXPECT_TRUE(answer("vite").hits.last().near);
    add("vite");
    EXPECT_EQ(answer("vite").total, 6) << "six are enough";
}

TEST_F(SearchIndexTest, a_named_section_comes_first_and_hides_nothing) {
    add("photo").status = TopicStatus::Done;
    add("photo");
    add("photo bib");
    add("autre").status = TopicStatus::Done;
    const auto titles = [](const SearchAnswer &answer) {
        QStringList all;
        for (const SearchHit &hit : answer.hits) {
            all += (hit.outside ? QStringLiteral("> ") : QString()) + hit.topic->title;
        }
        return all.join(u'|');
    };
    EXPECT_EQ(titles(answer("bib photo", TopicSection::Library, "photo")),
              text("photo|> photo bib"));
    EXPECT_EQ(answer("bib photo", TopicSection::Library, "photo").outside, 1);
    EXPECT_EQ(titles(answer("bib ", TopicSection::Library, "")), text("autre|photo|> photo bib"));
}

TEST(SearchNear, tells_a_slip_from_another_word) {
    struct Case {
        const char *typed;
        const char *word;
        int mistakes; // 0: it is another word
    };
    const Case cases[] = {
        {"recat", "react", 1},
        {"raect", "reactivite", 1},
        {"vite", "vide", 1},
        {"vite", "site", 0},
        {"kubernets", "kubernetes", 1},
        {"kubrnets", "kubernetes", 2},
        {"kbrnts", "kubernetes", 3},
        {"kbrnts", "kybernauts", 3},
        {"kbr", "kubernetes", 0},
        {"ubernetes", "kubernetes", 1},
        {"vue", "vide", 0},
        {"photo", "pilote", 0},
    };
    for (const Case &each : cases) {
        const auto place = NearWord(each.typed).in("le " + QByteArray(each.word) + ", oui");
        EXPECT_EQ(place ? place->mistakes : 0, each.mistakes) << each.typed << " " << each.word;
        if (place) {
            EXPECT_EQ(place->offset, 3);
        }
    }
    EXPECT_FALSE(NearWord(QByteArray(300, 'a')).in(QByteArray(300, 'a')));
    EXPECT_FALSE(NearWord("").in("a"));
    EXPECT_EQ(markedForSearch(text("Réact & <vue>"), {"recat", "vue"}, true),
              text("<b>Ré</b>a<b>ct</b> &amp; &lt;<b>vue</b>&gt;"));
    EXPECT_EQ(markedForSearch(text("Réact"), {"recat"}, false), text("Réact"));
}

} // namespace
} // namespace vorle
