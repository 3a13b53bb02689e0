#include "app/triage/ReserveActivity.h"
#include "tests/core/Samples.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::sampleTopic;

class ReserveActivityTest : public testing::Test {
protected:
    QUuid add(const char *title, const QString &link, TopicStatus status = TopicStatus::Inbox) {
        Topic topic = sampleTopic(QString::fromUtf8(title), status);
        topic.sources = {{{}, link}};
        topic.foundAt = clock.moment;
        const QUuid id = store.add({topic}).first();
        note(id);
        return id;
    }
    void postpone(const QUuid &id) {
        store.postpone(id);
        note(id);
    }
    void note(const QUuid &id) { activity.note(*store.topic(id), store); }
    bool moved(const QUuid &id) const { return activity.hasMoved(*store.topic(id), store); }
    void wait() { clock.moment = clock.moment.addSecs(60); }

    test::FixedClock clock;
    TopicStore store{QString(), Resources(), clock};
    ReserveActivity activity;
};

TEST_F(ReserveActivityTest, a_topic_whose_link_a_run_found_again_has_moved_until_set_aside_again) {
    RediscoveryLog finds(store, clock);
    activity.observe(finds);
    const QUuid id = add("undici", QStringLiteral("https://example.org/undici"));
    test::waitFor(finds.record(id));
    wait();
    postpone(id);
    EXPECT_FALSE(moved(id)) << "what was found before it was set aside is no news";
    wait();
    test::waitFor(finds.record(id));
    EXPECT_TRUE(moved(id));
    wait();
    postpone(id);
    EXPECT_FALSE(moved(id));
    store.keep(id);
    wait();
    test::waitFor(finds.record(id));
    EXPECT_EQ(finds.topics(), QList{id});
    EXPECT_FALSE(finds.isSince(id, *store.topic(id)->triagedAt)) << "it does not wait for news";
}

TEST_F(ReserveActivityTest, a_newer_topic_about_the_same_repository_is_news) {
    const struct {
        const char *link;
        bool news;
    } cases[] = {
        {"https://github.com/nodejs/undici/releases/tag/v7.18.1", true},
        {"https://www.github.com/NodeJS/Undici.git", true},
        {"https://raw.githubusercontent.com/nodejs/undici/main/CHANGELOG.md", true},
        {"https://github.com/nodejs/node", false},
        {"https://github.com/topics/undici", false},
        {"https://example.org/github.com/nodejs/undici", false},
    };
    for (const auto &one : cases) {
        const QUuid id = add("undici", QStringLiteral("https://github.com/nodejs/undici"));
        postpone(id);
        EXPECT_FALSE(moved(id));
        wait();
        const QUuid other = add("other", QString::fromUtf8(one.link));
        EXPECT_EQ(moved(id), one.news) << one.link;
        EXPECT_EQ(activity.relatedTopics(*store.topic(other)).contains(id), one.news) << one.link;
        store.dismiss(other);
        EXPECT_FALSE(moved(id)) << one.link;
    }
}

// Two are set aside, one long before the other: what came in between is news of the first alone,
// whichever of them is known first, and also where everything is read at once.
TEST_F(ReserveActivityTest, what_came_between_two_that_were_set_aside_is_found_in_any_order) {
    const QString link = QStringLiteral("https://example.org/undici");
    const QUuid early = add("early", link);
    const QUuid late = add("late", link);
    store.postpone(early);
    wait();
    add("between", link);
    wait();
    store.postpone(late);
    for (const QList<QUuid> &known : {QList{early, late}, QList{late, early}, QList<QUuid>()}) {
        activity = {};
        if (known.isEmpty()) {
            activity.load(store);
        }
        for (const QUuid &id : known) {
            note(id);
        }
        EXPECT_TRUE(moved(early));
        EXPECT_FALSE(moved(late));
    }
}

} // namespace
} // namespace vorle
