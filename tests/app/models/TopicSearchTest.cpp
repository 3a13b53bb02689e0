#include "app/models/TopicSearch.h"
#include "app/models/Section.h"
#include "tests/core/Samples.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <QAbstractItemModelTester>

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
    const QAbstractItemModelTester tester(&search,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    int answers = 0;
    QObject::connect(&search, &TopicSearch::resultsChanged, [&] { ++answers; });
    search.setQuery(text("r"));
    search.setQuery(text("ru"));
    search.setQuery(text("velo"));
    EXPECT_TRUE(search.busy());
    spinUntil([&] { return !search.busy(); });
    EXPECT_EQ(answers, 1);
    ASSERT_EQ(search.count(), 1);
    const QModelIndex first = search.index(0);
    EXPECT_EQ(first.data(TopicSearch::Title), text("Vélo"));
    EXPECT_EQ(first.data(TopicSearch::SectionLabel), text("À trier"));
    EXPECT_EQ(search.statusText(), text("1 sujet trouvé"));

    store.dismiss(store.topics()[1]->id);
    EXPECT_EQ(first.data(TopicSearch::SectionNumber), -1);
    // A note written since the index was made is found.
    store.setNote(store.topics()[0]->id, text("à comparer au zig"));
    search.setQuery(text("zig"));
    spinUntil([&] { return !search.busy(); });
    EXPECT_EQ(search.index(0).data(TopicSearch::Title), text("Rust"));
    search.setQuery(text("rien du tout"));
    spinUntil([&] { return !search.busy(); });
    EXPECT_EQ(search.statusText(), text("Rien trouvé pour «\u202Frien du tout\u202F»."));
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
    EXPECT_EQ(search.index(0).data(TopicSearch::Title), text("zig.org"));
    EXPECT_EQ(search.index(0).data(TopicSearch::SectionNumber), static_cast<int>(Section::Inbox));
    EXPECT_EQ(search.index(1).data(TopicSearch::Title), text("Rust"));
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
