#include "app/models/TopicSelection.h"
#include "tests/app/models/Watched.h"

#include <QCoreApplication>

#include <optional>
#include <tuple>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using Arrival = TopicSelection::Arrival;

Topic topicOf(const QString &title, int score, TopicStatus status = TopicStatus::Inbox) {
    Topic topic = test::sampleTopic(title, status);
    topic.score = score;
    return topic;
}

/// "À trier" with two tiers of two topics each, and what a view hears of the choice.
class TopicSelectionTest : public testing::Test {
protected:
    TopicSelectionTest() {
        for (const int score : {9, 8, 7, 6}) {
            ids += shelf.add(topicOf(QStringLiteral("Sujet %1").arg(score), score));
        }
        selection = std::make_unique<TopicSelection>(list);
        QObject::connect(selection.get(), &TopicSelection::changing, [this] {
            heard += QStringLiteral("changing");
            shownThen = selection->shownId();
        });
        QObject::connect(selection.get(), &TopicSelection::settled, [this](Arrival how) {
            arrivals += how;
            goneThen = selection->goneId();
        });
        turn();
    }
    /// What is posted is done: the cards follow.
    void turn() {
        QCoreApplication::processEvents();
        arrival = arrivals.isEmpty() ? std::optional<Arrival>() : arrivals.last();
        arrivals.clear();
    }
    QUuid uuid(int topic) const { return QUuid::fromString(ids.at(topic)); }
    void leave(int topic) { shelf.store.dismiss(uuid(topic)); }
    /// The chosen topic's number among those made.
    qsizetype chosen() const { return ids.indexOf(selection->currentId()); }
    qsizetype shown() const { return ids.indexOf(selection->shownId()); }

    test::Shelf shelf;
    TopicListModel &list = shelf.list(Section::Inbox);
    QStringList ids; // the best first
    std::unique_ptr<TopicSelection> selection;
    QStringList heard;
    QString shownThen;
    QString goneThen;
    QList<Arrival> arrivals;
    std::optional<Arrival> arrival; // of the last turn
};

TEST_F(TopicSelectionTest, stays_with_its_topic_wherever_the_list_moves_it) {
    EXPECT_EQ(chosen(), 0);
    EXPECT_EQ(shown(), 0);
    selection->step(2);
    turn();
    EXPECT_EQ(shown(), 2);
    EXPECT_EQ(arrival, Arrival::Asked);

    // A run lands above it, and below.
    shelf.store.add({topicOf(QStringLiteral("a"), 10), topicOf(QStringLiteral("b"), 9),
                     topicOf(QStringLiteral("c"), 3)});
    EXPECT_EQ(chosen(), 2);
    EXPECT_EQ(selection->currentRow(), 4);
    turn();
    EXPECT_EQ(arrival, Arrival::Stays);
    // A correction takes it to the first tier, then to the last.
    for (const auto &[score, row] : {std::pair{10.0, 0}, std::pair{1.0, 6}}) {
        shelf.store.setCorrection(uuid(2), Correction{score, {}, {}, {}});
        EXPECT_EQ(selection->currentRow(), row);
        turn();
        EXPECT_EQ(shown(), 2);
        EXPECT_EQ(arrival, Arrival::Stays);
    }
    // Another goes: nothing is chosen anew.
    leave(0);
    turn();
    EXPECT_EQ(chosen(), 2);
    EXPECT_EQ(arrival, Arrival::Stays);
    EXPECT_EQ(selection->goneId(), QString());
}

TEST_F(TopicSelectionTest, the_next_is_chosen_where_one_goes_away) {
    const std::tuple<int, int, int> cases[] = {// goes, then chosen, in row
                                               {0, 1, 0},
                                               {1, 2, 0},
                                               {3, 2, 0},
                                               {2, -1, -1}};
    for (const auto &[goes, next, row] : cases) {
        selection->show(ids.at(goes));
        turn();
        selection->setEnlarged(true);
        leave(goes);
        EXPECT_EQ(chosen(), next);
        EXPECT_EQ(selection->currentRow(), row);
        // The card does not follow inside the change; its place is kept until it does.
        EXPECT_EQ(shown(), goes);
        EXPECT_EQ(selection->goneId(), ids.at(goes));
        turn();
        EXPECT_EQ(shown(), next);
        EXPECT_EQ(arrival, Arrival::Replaces);
        EXPECT_EQ(goneThen, ids.at(goes)) << "until the card is laid out";
        EXPECT_EQ(selection->goneId(), QString());
        EXPECT_EQ(selection->isEnlarged(), next >= 0) << "the page turns to the next";
    }
    selection->step(1);
    EXPECT_EQ(selection->currentRow(), -1) << "there is nowhere to go";
    // What comes into an empty list is chosen; a reset leaves what is still there.
    const QString id = shelf.add(topicOf(QStringLiteral("neuf"), 5));
    EXPECT_EQ(selection->currentId(), id);
    selection->setEnlarged(true);
    Q_EMIT shelf.store.topicsReset();
    EXPECT_EQ(selection->currentId(), id);
    EXPECT_TRUE(selection->isEnlarged());
}

TEST_F(TopicSelectionTest, keys_that_come_faster_than_frames_are_followed_once) {
    heard.clear();
    selection->step(1);
    selection->step(1);
    leave(2);
    shelf.add(topicOf(QStringLiteral("neuf"), 10));
    EXPECT_EQ(heard.size(), 1) << "told before the first change alone";
    EXPECT_EQ(shownThen, ids.at(0));
    EXPECT_EQ(chosen(), 3);
    selection->settle(); // a key that decides does not wait
    EXPECT_EQ(shown(), 3);
    EXPECT_EQ(arrivals, QList<Arrival>{Arrival::Replaces});
    arrivals.clear();
    turn();
    EXPECT_FALSE(arrival) << "nothing is left to follow";
    EXPECT_EQ(heard.size(), 1);
    // Held to both ends.
    selection->step(-50);
    EXPECT_EQ(selection->currentRow(), 0);
    selection->step(50);
    EXPECT_EQ(selection->currentRow(), 3);
    EXPECT_FALSE(selection->show(QStringLiteral("nothing")));
    EXPECT_EQ(selection->currentRow(), 3);
    // One that is back before the cards could follow was never seen to go.
    turn();
    const auto before = shelf.store.triageState(uuid(3));
    leave(3);
    shelf.store.restore(uuid(3), *before);
    EXPECT_EQ(selection->goneId(), QString());
    turn();
    EXPECT_NE(arrival, Arrival::Replaces);
}

TEST_F(TopicSelectionTest, the_line_stands_beside_its_own_tier) {
    const auto beside = [this](int topic) {
        selection->show(ids.at(topic));
        const Ghost ghost = selection->ghostToLeave();
        EXPECT_EQ(ghost.topicId, ids.at(topic));
        return std::pair(ids.indexOf(ghost.overId), ids.indexOf(ghost.underId));
    };
    using Place = std::pair<qsizetype, qsizetype>;
    EXPECT_EQ(list.heading(1), list.heading(0));
    EXPECT_NE(list.heading(2), list.heading(1));
    EXPECT_EQ(beside(0), Place(1, -1)) << "over the next";
    EXPECT_EQ(beside(1), Place(-1, 0)) << "the next has another heading: under the one before";
    EXPECT_EQ(beside(2), Place(3, -1));
    EXPECT_EQ(beside(3), Place(-1, -1)) << "alone at the end";
    leave(1);
    EXPECT_EQ(beside(0), Place(2, -1)) << "the first has none before it";

    // It comes together with the next card, in one change.
    turn();
    Ghost ghost = selection->ghostToLeave();
    ghost.went = QStringLiteral("Gardé");
    leave(0);
    selection->setGhost(ghost);
    EXPECT_FALSE(selection->shownGhost().isShown());
    turn();
    EXPECT_EQ(selection->shownGhost(), ghost);
    EXPECT_EQ(shown(), 2);
    EXPECT_EQ(ghost.card.title(), QStringLiteral("Sujet 9")) << "as its card stood";
    selection->setGhost({});
    turn();
    EXPECT_FALSE(selection->shownGhost().isShown());
    EXPECT_EQ(arrival, Arrival::Stays);
    // Taken back, it comes out of its line again.
    const auto before = shelf.store.triageState(uuid(2));
    leave(2);
    turn();
    shelf.store.restore(uuid(2), *before);
    EXPECT_TRUE(selection->showReturned(ids.at(2)));
    turn();
    EXPECT_EQ(arrival, Arrival::Returns);
    EXPECT_EQ(shown(), 2);
    EXPECT_FALSE(selection->showReturned(ids.at(0))) << "it is not in this list";
    turn();
    EXPECT_TRUE(selection->showReturned(ids.at(2))); // its note, or its score, is what came back
    turn();
    EXPECT_EQ(arrival, TopicSelection::Asked);
    selection->step(1);
    turn();
    EXPECT_EQ(arrival, Arrival::Asked);
}

} // namespace
} // namespace vorle
