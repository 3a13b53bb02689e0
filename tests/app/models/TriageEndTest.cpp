#include "app/models/TriageEnd.h"
#include "app/models/BadgeLook.h"
#include "tests/app/models/Watched.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::text;

/// What is told once everything is sorted.
class TriageEndTest : public testing::Test {
protected:
    QString add(int score, TopicStatus status = TopicStatus::Inbox) {
        Topic topic = test::sampleTopic(QStringLiteral("Sujet %1").arg(++made), status);
        topic.score = score;
        return shelf.add(topic);
    }
    void after(int seconds) { shelf.clock.moment = shelf.clock.moment.addSecs(seconds); }
    /// "gardés 9 8|écarté 2"
    QString groups() const {
        QStringList all;
        for (const QVariant &each : end.groups()) {
            const auto group = each.value<SortedGroup>();
            QStringList words{group.name};
            for (const QVariant &badge : group.badges) {
                words += badge.value<BadgeLook>().digits;
            }
            all += words.join(u' ');
        }
        return all.join(u'|');
    }

    int made = 0;
    test::Shelf shelf;
    Decisions decisions{shelf.store};
    TriageEnd end{shelf.store, shelf.list(Section::Inbox), decisions};
};

TEST_F(TriageEndTest, counts_what_holds_and_how_long_it_took) {
    const QString a = add(4), b = add(9), c = add(7), d = add(2), e = add(8);
    EXPECT_EQ(end.text(), QString());
    decisions.keep(a);
    after(100);
    decisions.keep(b);
    decisions.later(c);
    EXPECT_EQ(end.text(), QString()) << "there is something to sort";
    after(100);
    decisions.dismiss(d);
    decisions.dismiss(e);
    EXPECT_EQ(end.text(), text("5 sujets en 3\u00A0min\u00A0: 2 gardés, 1 plus tard, 2 écartés"));
    EXPECT_EQ(groups(), text("gardés 9 4|plus tard 7|écartés 8 2"));

    // Taken back it is out, sorted again it counts as it is then.
    decisions.undo();
    EXPECT_EQ(groups(), QString());
    decisions.undo();
    decisions.later(d);
    decisions.keep(e);
    EXPECT_EQ(groups(), text("gardés 9 8 4|plus tard 7 2"));
    // What becomes of them elsewhere is no sorting.
    decisions.done(a);
    decisions.postpone(b);
    decisions.keep(c);
    EXPECT_EQ(groups(), text("gardés 9 8 4|plus tard 7 2"));
    // Put back and sorted anew, by the same hand and within the same sitting.
    decisions.backToTriage(c);
    EXPECT_EQ(end.text(), QString());
    decisions.dismiss(c);
    EXPECT_EQ(groups(), text("gardés 9 8 4|plus tard 2|écarté 7"));
    // What another hand did since is not told as done here; a link still being read is sorted too.
    after(1);
    shelf.store.backToInbox(QUuid::fromString(c));
    shelf.store.dismiss(QUuid::fromString(c));
    EXPECT_EQ(groups(), text("gardés 9 8 4|plus tard 2"));
    const QString link = add(0, TopicStatus::Pending);
    decisions.dismiss(link);
    EXPECT_TRUE(groups().contains(text("écarté"))) << groups().toStdString();
}

TEST_F(TriageEndTest, a_pause_or_a_new_find_begins_another_sitting) {
    const QString a = add(9), b = add(8), c = add(7);
    decisions.keep(a);
    after(TriageSitting::pause);
    decisions.keep(b);
    after(TriageSitting::pause - 1);
    decisions.later(c);
    EXPECT_EQ(end.text(), text("2 sujets en 29\u00A0min\u00A0: 1 gardé, 1 plus tard"));

    const QString d = add(3);
    EXPECT_EQ(end.text(), QString());
    decisions.dismiss(d);
    EXPECT_EQ(end.text(), text("1 sujet\u00A0: 1 écarté")) << "in the singular, without a time";
    // Back over the border, where those of the sitting before are.
    decisions.undo();
    decisions.undo();
    decisions.keep(d);
    EXPECT_EQ(end.text(), QString());
    decisions.keep(c);
    EXPECT_EQ(end.text(), text("2 sujets\u00A0: 2 gardés"));

    // A clock that was set back tells no time, and one that a command sorted is nobody's here.
    const QString e = add(5), f = add(6), g = add(1);
    decisions.keep(e);
    after(-4000);
    decisions.keep(f);
    shelf.store.dismiss(QUuid::fromString(g));
    EXPECT_EQ(end.text(), text("2 sujets\u00A0: 2 gardés"));
}

} // namespace
} // namespace vorle
