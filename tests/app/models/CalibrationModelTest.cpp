#include "app/models/CalibrationModel.h"
#include "app/models/Decisions.h"
#include "core/ScoreScale.h"
#include "tests/core/Samples.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using Model = CalibrationModel;

class CalibrationModelTest : public testing::Test {
protected:
    CalibrationModelTest() {
        preferences.change(&Settings::onboarded, true);
        preferences.change(&Settings::calibrated, false);
        QObject::connect(&model, &Model::said, [this](const QString &text) { said += text; });
    }
    void ran() { preferences.change(&Settings::lastSearch, clock.moment); }
    QList<QUuid> fill(int count) {
        QList<Topic> topics;
        QList<QUuid> ids;
        for (int i = 0; i < count; ++i) {
            Topic topic = test::sampleTopic(QString::number(i));
            topic.score = 6;
            ids += topic.id;
            topics += topic;
        }
        store.add(topics);
        turn();
        return ids;
    }
    void turn() {
        QCoreApplication::processEvents();
        clock.moment = clock.moment.addSecs(20);
    }
    TopicPtr asked() { return store.topic(QUuid::fromString(model.topic().topicId())); }
    void answer(Model::Choice choice, int score) {
        model.choose(choice);
        turn();
        model.give(score);
        turn();
    }

    QTemporaryDir dir;
    test::FixedClock clock;
    TopicStore store{QString(), Resources(), clock};
    Preferences preferences{
        std::make_unique<SettingsFile>(dir.filePath(QStringLiteral("settings.json")))};
    Decisions decisions{store};
    Model model{preferences, store, decisions.history(), clock};
    QStringList said;
};

TEST_F(CalibrationModelTest, is_offered_after_a_run_until_it_is_done_or_passed) {
    EXPECT_FALSE(model.isProposed());
    fill(12);
    EXPECT_FALSE(model.isProposed()) << "no run has ended";
    ran();
    turn();
    EXPECT_TRUE(model.isProposed());
    EXPECT_TRUE(model.invitationText().contains(u"10 sujets"));
    const QString first = model.invitationAction();
    model.begin();
    answer(Model::Keep, 6);
    model.leave();
    EXPECT_TRUE(model.isProposed()) << "it can be gone on with";
    EXPECT_NE(model.invitationAction(), first);
    EXPECT_TRUE(model.invitationText().contains(u"9 sujets"));
    model.begin();
    EXPECT_EQ(model.position(), QStringLiteral("2 sur 10"));
    for (int i = 0; i < 9; ++i) {
        answer(Model::NotForMe, -1);
    }
    EXPECT_EQ(model.stage(), Model::Over);
    EXPECT_TRUE(preferences.settings().calibrated);
    EXPECT_FALSE(model.isProposed());
    model.beginAgain();
    EXPECT_EQ(model.stage(), Model::Choosing);
    EXPECT_EQ(model.position(), QStringLiteral("1 sur 2"));
    model.skip();
    EXPECT_EQ(model.stage(), Model::Closed);
    EXPECT_FALSE(model.isProposed());
}

TEST_F(CalibrationModelTest, tells_its_own_score_once_the_person_gave_theirs) {
    ran();
    fill(3);
    model.begin();
    const TopicPtr first = asked();
    model.give(9); // nothing is asked yet
    EXPECT_EQ(asked()->id, first->id);
    model.choose(Model::Later);
    EXPECT_EQ(store.topic(first->id)->status, TopicStatus::Reserve) << "kept at once";
    EXPECT_EQ(model.topic().title(), first->title) << "it is still what is asked about";
    model.choose(Model::Keep); // twice the key
    EXPECT_EQ(store.topic(first->id)->status, TopicStatus::Reserve);
    EXPECT_TRUE(said.isEmpty());
    model.give(9);
    EXPECT_EQ(shownScore(*store.topic(first->id)), 9);
    ASSERT_EQ(said.size(), 1);
    EXPECT_TRUE(said.last().endsWith(u"J’avais mis 6."));
    EXPECT_NE(asked()->id, first->id);
    answer(Model::Keep, 6);
    EXPECT_TRUE(said.last().endsWith(u"Comme moi."));
    answer(Model::Keep, -1);
    EXPECT_FALSE(said.last().contains(u"mis"));
    EXPECT_EQ(model.stage(), Model::Over);
}

TEST_F(CalibrationModelTest, takes_back_whole_answers_in_their_order_and_goes_on) {
    ran();
    fill(2);
    model.begin();
    const TopicPtr first = asked();
    answer(Model::Keep, 9);
    const TopicPtr second = asked();
    model.choose(Model::NotForMe);
    model.takeBack(); // the choice alone
    EXPECT_EQ(asked()->id, second->id);
    EXPECT_EQ(asked()->status, TopicStatus::Inbox);
    answer(Model::NotForMe, 2);
    EXPECT_TRUE(preferences.settings().calibrated);
    model.takeBack();
    EXPECT_EQ(asked()->id, second->id);
    EXPECT_FALSE(preferences.settings().calibrated);
    model.takeBack();
    EXPECT_EQ(asked()->id, first->id);
    EXPECT_FALSE(asked()->correction);
    EXPECT_EQ(model.position(), QStringLiteral("1 sur 2"));
    EXPECT_FALSE(model.canTakeBack());
    // What was answered is also taken back outside, as any decision.
    answer(Model::Keep, -1);
    model.leave();
    EXPECT_FALSE(decisions.undo().isEmpty());
    EXPECT_EQ(store.topic(first->id)->status, TopicStatus::Inbox);
}

TEST_F(CalibrationModelTest, follows_a_list_that_changes_under_it) {
    ran();
    const QList<QUuid> ids = fill(3);
    model.begin();
    const QUuid first = asked()->id;
    fill(5); // a run lands
    EXPECT_EQ(asked()->id, first) << "what is asked about stays";
    store.dismiss(first); // by a command
    turn();
    EXPECT_NE(asked()->id, first);
    EXPECT_EQ(model.stage(), Model::Choosing);
    for (const TopicPtr &topic : store.topics(TopicStatus::Inbox)) {
        store.dismiss(topic->id);
    }
    turn();
    EXPECT_EQ(model.stage(), Model::Over);
}

TEST_F(CalibrationModelTest, with_nothing_to_ask_it_is_not_over_for_ever) {
    model.beginAgain();
    EXPECT_EQ(model.stage(), Model::Over);
    EXPECT_TRUE(model.endText().startsWith(u"Rien à trier pour l’instant"));
    model.leave();
    ran();
    fill(4);
    EXPECT_TRUE(model.isProposed());
}

} // namespace
} // namespace vorle
