#include "app/models/palette/TopicSearch.h"
#include "tests/core/Samples.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::sampleTopic;
using test::spinUntil;

using test::text;

TEST(TopicSearch, answers_the_newest_query_and_follows_what_is_decided) {
    test::FixedClock clock;
    TopicStore store(QString(), Resources(), clock);
    store.add({sampleTopic(text("Rust")), sampleTopic(text("Vélo"))});
    TopicSearch search(store);
    int answers = 0;
    QObject::connect(&search, &TopicSearch::foundChanged, [&] { ++answers; });
    search.setQuery(text("r"));
    search.setQuery(text("ru"));
    search.setQuery(text("velo"));
    EXPECT_TRUE(search.busy());
    spinUntil([&] { return !search.busy(); });
    EXPECT_EQ(answers, 1);
    ASSERT_EQ(search.count(), 1);
    EXPECT_EQ(search.found().first().title, text("<b>Vélo</b>"));
    EXPECT_EQ(search.countText(), text("1 sujet"));

    store.dismiss(store.topics()[1]->id);
    EXPECT_EQ(search.found().first().topic->status, TopicStatus::Dismissed);
    // A note written since the index was made is found.
    store.setNote(store.topics()[0]->id, text("à comparer au zig"));
    search.setQuery(text("zig"));
    spinUntil([&] { return !search.busy(); });
    EXPECT_EQ(search.found().first().title, text("Rust"));
    search.setQuery(text("rien du tout"));
    spinUntil([&] { return !search.busy(); });
    EXPECT_EQ(search.countText(), text("Rien trouvé pour «\u202Frien du tout\u202F»."));
    search.setQuery(QString());
    EXPECT_EQ(search.count(), 0);
}

TEST(TopicSearch, answers_the_same_query_again_from_the_topics_as_they_are_now) {
    test::FixedClock clock;
    TopicStore store(QString(), Resources(), clock);
    const QUuid rust = store.add({sampleTopic(text("Rust"))}).first();
    TopicSearch search(store);
    search.refresh();
    EXPECT_FALSE(search.busy()) << "there is nothing to answer";
    search.setQuery(text("zig"));
    search.refresh(); // while it is being answered
    spinUntil([&] { return !search.busy(); });
    EXPECT_EQ(search.count(), 0);
    store.setNote(rust, text("à comparer au zig"));
    Topic reading = sampleTopic(text("zig.org"), TopicStatus::Pending);
    reading.capturedURL = reading.sources.first().url;
    reading.foundAt = reading.foundAt.addDays(1);
    store.add({reading, sampleTopic(text("zig d’une fouille en cours"), TopicStatus::Pending)});
    search.setQuery(text("zig"));
    EXPECT_FALSE(search.busy());
    search.refresh();
    spinUntil([&] { return !search.busy(); });
    ASSERT_EQ(search.count(), 2);
    EXPECT_EQ(search.found()[0].topic->title, text("zig.org"));
    EXPECT_EQ(search.found()[1].topic->title, text("Rust"));
    // What a run lands is found without another letter, as long as somebody looks.
    search.prepare();
    store.add({sampleTopic(text("zig 2"))});
    spinUntil([&] { return search.count() == 3; });
    search.rest();
    int asked = 0;
    QObject::connect(&search, &TopicSearch::busyChanged, [&] { ++asked; });
    store.add({sampleTopic(text("zig 3"))});
    test::waitFor(sleepFor(std::chrono::milliseconds(600))); // longer than topics take to land
    EXPECT_EQ(asked, 0);
    search.prepare();
    search.refresh();
    spinUntil([&] { return search.count() == 4; });
}

TEST(TopicSearch, a_word_that_names_a_section_asks_for_it) {
    using enum TopicSection;
    const struct {
        const char *query;
        std::optional<TopicSection> section;
        const char *rest;
    } cases[] = {
        {"bib photo", Library, "photo"},
        {"photo  BIBLIOTHÈQUE", Library, "photo"},
        {"rés mise en page", Reserve, "mise en page"},
        {"trier photo", Inbox, "photo"},
        {"à tri photo", Inbox, "photo"},
        {"programme ", Program, ""},
        {"programme", std::nullopt, ""}, // on its own it is a word
        {"bi photo", std::nullopt, ""},
        {"le programme photo", std::nullopt, ""},
        {"a photo", std::nullopt, ""},
        {"  ", std::nullopt, ""},
        {"", std::nullopt, ""},
    };
    for (const auto &each : cases) {
        const SearchAsk ask = TopicSearch::askOf(text(each.query));
        EXPECT_EQ(ask.section, each.section) << each.query;
        EXPECT_EQ(ask.rest, text(each.rest)) << each.query;
        EXPECT_EQ(ask.words, text(each.query));
    }
    test::FixedClock clock;
    TopicStore store(QString(), Resources(), clock);
    store.add({sampleTopic(text("Photo"), TopicStatus::Done), sampleTopic(text("Bib photo"))});
    TopicSearch search(store);
    const auto countOf = [&](const char *query) {
        search.setQuery(text(query));
        spinUntil([&] { return !search.busy(); });
        return search.countText();
    };
    EXPECT_EQ(countOf("bib photo"), text("1 sujet dans Bibliothèque, 1 ailleurs"));
    EXPECT_EQ(countOf("bibl photo"), text("1 sujet dans Bibliothèque"));
    EXPECT_EQ(countOf("photo"), text("2 sujets"));
}

TEST(TopicSearch, may_go_while_it_is_searching) {
    test::FixedClock clock;
    TopicStore store(QString(), Resources(), clock);
    store.add({sampleTopic(text("Rust"))});
    auto search = std::make_unique<TopicSearch>(store);
    search->setQuery(text("rust"));
    search.reset();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(store.count(), 1);
}

} // namespace
} // namespace vorle
