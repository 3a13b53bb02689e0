#include "app/models/Decisions.h"
#include "app/models/ProgramBudget.h"
#include "tests/app/models/Watched.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::sampleTopic;
using test::Shelf;
using test::Watched;

/// Hundreds of random decisions, undone and redone, with runs and captures between them: each list
/// must be what one freshly made is, and its signals alone must have led there.
class RandomDecisions : public testing::TestWithParam<quint32> {
protected:
    RandomDecisions() {
        for (const auto &list : shelf.lists) {
            watched.push_back(std::make_unique<Watched>(*list));
        }
    }
    int pick(quint32 count) { return static_cast<int>(random.bounded(count)); }
    QList<TopicSource> source() {
        return {{{}, QStringLiteral("https://example.org/%1").arg(pick(30))}};
    }
    void add() {
        Topic topic = sampleTopic(QStringLiteral("t%1").arg(shelf.store.count()),
                                  pick(4) == 0 ? TopicStatus::Pending : TopicStatus::Inbox);
        topic.score = pick(11);
        topic.minutes = pick(90);
        topic.foundAt = shelf.clock.moment.addSecs(pick(3) * 3600 - 3600);
        topic.dependency = QStringLiteral("dep%1").arg(pick(12));
        topic.sources = source();
        if (topic.status == TopicStatus::Pending && pick(2) == 0) {
            topic.capturedURL = topic.sources.first().url;
        }
        shelf.store.add({topic});
    }
    /// A run finds out that a topic it holds back, with others after it, is another topic's page.
    void withdraw() {
        shelf.store.add({sampleTopic(QStringLiteral("held"), TopicStatus::Pending)});
        add();
        for (const TopicPtr &topic : shelf.store.topics(TopicStatus::Pending)) {
            if (!decided.contains(topic->id) && shelf.store.withdrawPending(topic->id, QUuid())) {
                ++withdrawn;
                return;
            }
        }
    }
    void decide(const QString &id) {
        decided.insert(QUuid::fromString(id));
        switch (pick(11)) {
        case 0:
        case 1:
            decisions.keep(id);
            break;
        case 2:
        case 3:
            decisions.later(id);
            break;
        case 4:
            decisions.dismiss(id);
            break;
        case 5:
            decisions.done(id);
            break;
        case 6:
            decisions.verdict(id, Worth::Useful);
            break;
        case 7:
            decisions.backToTriage(id);
            break;
        case 8:
            decisions.redo();
            break;
        default:
            decisions.undo();
        }
    }
    void disturb(const QUuid &id) {
        switch (pick(6)) {
        case 0:
            add();
            break;
        case 4:
            withdraw();
            break;
        case 1:
            shelf.store.setCorrection(id, Correction{double(pick(11)), {}, {}, {}});
            break;
        case 2:
            shelf.store.releaseAllPending();
            break;
        case 3: {
            Topic judged = *shelf.store.topic(id);
            judged.score = pick(11);
            shelf.store.completeCaptured(judged);
            break;
        }
        default:
            shelf.store.addSources(id, source());
        }
    }
    void expectAsFreshlyMade(std::size_t index) {
        const TopicListModel &list = *shelf.lists[index];
        TopicListModel anew(shelf.store, list.section(), shelf.clock);
        const ProgramBudget again(shelf.store, preferences, shelf.clock, anew);
        if (list.section() != Section::Program) {
            anew.setWaiting({});
        }
        QStringList ids;
        for (const TopicPtr &topic : anew.topics()) {
            ids += topic->id.toString(QUuid::WithoutBraces).toUpper();
            ASSERT_EQ(list.rowOf(ids.last()), ids.size() - 1);
        }
        ASSERT_EQ(watched[index]->seen, ids);
        ASSERT_EQ(list.minutes(), anew.minutes());
        ASSERT_EQ(list.movedCount(), anew.movedCount());
        ASSERT_EQ(watched[index]->resets, 0);
    }

    Shelf shelf;
    QTemporaryDir folder;
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    ProgramBudget budget{shelf.store, preferences, shelf.clock, shelf.list(Section::Program)};
    std::vector<std::unique_ptr<Watched>> watched;
    Decisions decisions{shelf.store};
    QRandomGenerator random{GetParam()};
    QSet<QUuid> decided;
    int withdrawn = 0;
};

TEST_P(RandomDecisions, leave_the_lists_as_if_freshly_made) {
    for (int i = 0; i < 30; ++i) {
        add();
    }
    for (int turn = 0; turn < 400; ++turn) {
        const QUuid id =
            shelf.store.topics().at(pick(static_cast<quint32>(shelf.store.count())))->id;
        shelf.clock.moment = shelf.clock.moment.addSecs(pick(3) * 1800);
        if (pick(16) < 11) {
            decide(id.toString(QUuid::WithoutBraces));
        } else {
            disturb(id);
        }
        budget.refresh();
        for (std::size_t i = 0; i < shelf.lists.size(); ++i) {
            expectAsFreshlyMade(i);
            ASSERT_FALSE(HasFatalFailure()) << "turn " << turn << ", list " << i;
        }
    }
    EXPECT_GT(withdrawn, 0);
    // Everything taken back leads to where nothing was decided.
    while (decisions.history().canUndo()) {
        EXPECT_FALSE(decisions.undo().isEmpty());
    }
}
INSTANTIATE_TEST_SUITE_P(Seeds, RandomDecisions, testing::Range(1U, 7U));

} // namespace
} // namespace vorle
