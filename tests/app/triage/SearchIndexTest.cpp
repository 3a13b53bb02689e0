#include "app/triage/SearchIndex.h"
#include "app/triage/SearchFold.h"
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
        QList<TopicPtr> all(topics.begin(), topics.end());
        QStringList titles;
        for (const SearchHit &hit : searched(indexed({}, all), text(query))) {
            titles += hit.topic->title;
        }
        return titles.join(u' ');
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
    const auto hits = searched(index, text("oeuvre"));
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

TEST_F(SearchIndexTest, gives_fifty_at_most_the_newest_first) {
    for (int i = 0; i < 60; ++i) {
        add("same").note = QString::number(i);
    }
    const auto hits = searched(indexed({}, {topics.begin(), topics.end()}), text("same"));
    ASSERT_EQ(hits.size(), maxHits);
    EXPECT_EQ(hits.first().topic->note, text("59"));
}

} // namespace
} // namespace vorle
