#include "app/triage/SectionOrder.h"

#include "app/labels/SectionLabels.h"
#include "tests/core/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

namespace vorle {
namespace {

struct Given {
    const char *title;
    TopicStatus status;
    int score;
    int day = 1; // of November: found, decided and done on it
    bool captured = false;
    bool urgent = false;
    bool moved = false;
    bool waits = false;
};

PlacedTopic placed(TopicStore &store, const Given &given) {
    Topic topic = test::sampleTopic(QString::fromUtf8(given.title), given.status);
    topic.score = given.score;
    topic.foundAt = QDateTime(QDate(2026, 11, given.day), QTime(8, 0), Qt::UTC);
    topic.triagedAt = topic.foundAt;
    topic.doneAt = topic.foundAt;
    if (given.captured) {
        topic.capturedURL = topic.mainSource()->url;
    }
    if (given.urgent) {
        topic.urgency.emplace().level = Judgment::Urgency::Level::Now;
    }
    const TopicPtr kept = store.topic(store.add({topic}).first());
    return {.topic = kept, .tier = tierOf(*kept), .moved = given.moved, .waits = given.waits};
}

// Each section's topics in the store's order; "wanted" is theirs, with the headings between.
TEST(SectionOrder, puts_each_sections_topics_and_headings_in_one_order) {
    using enum TopicStatus;
    const struct {
        TopicSection section;
        QList<Given> topics;
        const char *wanted;
    } cases[] = {
        {TopicSection::Inbox,
         {{"low", Inbox, 4},
          {"older", Inbox, 8, 1},
          {"newer", Inbox, 8, 2},
          {"twin", Inbox, 8, 2},
          {"best", Inbox, 10},
          {"flaw", Inbox, 3, 1, false, true},
          {"link", Pending, 0, 1, true},
          {"judged link", Inbox, 5, 1, true}},
         "[En cours de lecture] link [Urgent] flaw [Très pertinents] best newer twin older "
         "[Bons à savoir] judged link low"},
        // A file may hold scores that no judge gives.
        {TopicSection::Inbox,
         {{"least", Inbox, INT_MIN},
          {"below", Inbox, -5},
          {"best", Inbox, 10},
          {"beyond", Inbox, 300},
          {"most", Inbox, INT_MAX},
          {"flaw", Inbox, INT_MIN, 1, false, true}},
         "[Urgent] flaw [Très pertinents] beyond most best [À creuser] below least"},
        {TopicSection::Program,
         {{"long", Program, INT_MAX, 1, false, true, false, true},
          {"short", Program, INT_MIN},
          {"flaw", Program, INT_MIN, 1, false, true}},
         "[Urgent] flaw [À creuser] short "
         "[Ce qui suit ne tient pas dans ta semaine, et t’attend] long"},
        {TopicSection::Program,
         {{"long", Program, 10, 1, false, false, false, true},
          {"late", Program, 8, 2},
          {"early", Program, 8, 1},
          {"flaw", Program, 2, 3, false, true}},
         "[Urgent] flaw [Très pertinents] early late "
         "[Ce qui suit ne tient pas dans ta semaine, et t’attend] long"},
        {TopicSection::Reserve,
         {{"old", Reserve, 9, 1},
          {"new", Reserve, 2, 3},
          {"news", Reserve, 2, 2, false, false, true}},
         "[Ils ont bougé] news [] new old"},
        {TopicSection::Library,
         {{"first", Done, 9, 1}, {"same", Done, 3, 2}, {"last", Done, 5, 2}},
         "[Novembre 2026] same last first"},
    };
    for (const auto &row : cases) {
        const test::FixedClock clock;
        TopicStore store{QString(), Resources(), clock};
        QList<PlacedTopic> topics;
        for (const Given &given : row.topics) {
            topics += placed(store, given);
            EXPECT_EQ(sectionOf(*topics.last().topic), row.section) << given.title;
        }
        std::ranges::reverse(topics); // the store's order is kept whatever order they come in
        QStringList said;
        std::optional<QString> heading;
        for (const PlacedTopic &each : inOrder(row.section, topics, store)) {
            const QString own = headingOf(row.section, each);
            if (own != heading) {
                said += u'[' + own + u']';
                heading = own;
            }
            said += each.topic->title;
        }
        EXPECT_EQ(said.join(u' ').toStdString(), row.wanted);
    }
}

TEST(SectionOrder, shows_what_is_pending_or_dismissed_nowhere_save_a_link_being_read) {
    Topic topic = test::sampleTopic(QStringLiteral("a"), TopicStatus::Pending);
    EXPECT_EQ(sectionOf(topic), std::nullopt);
    topic.capturedURL = QStringLiteral("https://example.org/");
    EXPECT_EQ(sectionOf(topic), TopicSection::Inbox);
    topic.status = TopicStatus::Dismissed;
    EXPECT_EQ(sectionOf(topic), std::nullopt);
}

} // namespace
} // namespace vorle
