#include "app/triage/Calibration.h"
#include "core/Corrections.h"
#include "core/ScoreScale.h"
#include "tests/core/Samples.h"

#include <QSet>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::sampleTopic;

class CalibrationTest : public testing::Test {
protected:
    void fillInbox(int count) {
        static const QStringList kinds{QStringLiteral("article"), QStringLiteral("tool"),
                                       QStringLiteral("security")};
        QList<Topic> topics;
        for (int i = 0; i < count; ++i) {
            Topic topic = sampleTopic(QString::number(i));
            topic.score = i % 11;
            topic.kind = kinds[i % 3];
            topic.interest = i % 2 == 0 ? QStringLiteral("Rust") : QStringLiteral("Qt");
            topics += topic;
        }
        store.add(topics);
    }
    QUuid answerNext(Outcome outcome, std::optional<int> score = std::nullopt) {
        const TopicPtr topic = calibration.next();
        EXPECT_TRUE(topic);
        clock.moment = clock.moment.addSecs(20);
        EXPECT_TRUE(calibration.choose(topic->id, outcome));
        calibration.give(score);
        return topic->id;
    }
    const Settings &settings() const { return preferences.settings(); }

    QTemporaryDir dir;
    test::FixedClock clock;
    TopicStore store{QString(), Resources(), clock};
    Preferences preferences{
        std::make_unique<SettingsFile>(dir.filePath(QStringLiteral("settings.json")))};
    DecisionHistory history{store};
    Calibration calibration{preferences, store, history, clock};
};

TEST_F(CalibrationTest, chooses_topics_unlike_each_other) {
    // Thirty of one sort stand before the rare ones.
    QList<TopicPtr> topics;
    const auto add = [&](int count, int score, const char *kind, const char *project) {
        for (int i = 0; i < count; ++i) {
            Topic topic = sampleTopic(QStringLiteral("t"));
            topic.score = score;
            topic.kind = QString::fromLatin1(kind);
            topic.project = QString::fromLatin1(project);
            topics.append(std::make_shared<const Topic>(topic));
        }
    };
    add(30, 7, "article", "A");
    add(1, 9, "article", "A");
    add(1, 5, "article", "A");
    add(1, 2, "tool", "A");
    add(2, 7, "video", "B");
    const QList<TopicPtr> chosen = variedTopics(topics, 10);
    ASSERT_EQ(chosen.size(), 10);
    QSet<Tier> tiers;
    QSet<QString> projects;
    QSet<QString> kinds;
    QSet<QUuid> ids;
    for (const TopicPtr &topic : chosen) {
        tiers.insert(tierOf(*topic));
        projects.insert(*topic->project);
        kinds.insert(*topic->kind);
        ids.insert(topic->id);
    }
    EXPECT_EQ(tiers.size(), 4);
    EXPECT_EQ(projects.size(), 2);
    EXPECT_EQ(kinds.size(), 3);
    EXPECT_EQ(ids.size(), 10);
    EXPECT_EQ(variedTopics(topics, 10), chosen) << "the same topics give the same choice";
    EXPECT_EQ(variedTopics(topics.first(3), 10), topics.first(3));
    EXPECT_TRUE(variedTopics({}, 10).isEmpty());
}

TEST_F(CalibrationTest, is_proposed_after_the_first_run_until_it_is_done_or_skipped) {
    EXPECT_FALSE(calibration.isProposed());
    fillInbox(12);
    EXPECT_FALSE(calibration.isProposed()) << "no run yet";
    preferences.change(&Settings::lastSearch, clock.moment);
    EXPECT_TRUE(calibration.isProposed());
    Calibration::skip(preferences);
    EXPECT_FALSE(calibration.isProposed());
    EXPECT_FALSE(calibration.next());
    calibration.beginAgain();
    EXPECT_TRUE(calibration.isProposed() && calibration.isUnderWay());

    // Onboarding that ends would read as a calibration done long ago.
    const QString file = dir.filePath(QStringLiteral("new.json"));
    {
        Preferences fresh(std::make_unique<SettingsFile>(file));
        Calibration::expect(fresh);
        fresh.change(&Settings::onboarded, true);
    }
    EXPECT_FALSE(Preferences(std::make_unique<SettingsFile>(file)).settings().calibrated);
}

TEST_F(CalibrationTest, goes_through_ten_topics_and_ends) {
    fillInbox(30);
    EXPECT_FALSE(calibration.next()) << "not begun";
    calibration.begin();
    EXPECT_EQ(settings().calibrationStart, clock.moment);
    const QUuid keptId = answerNext(Outcome::Kept, 9);
    const QUuid laterId = answerNext(Outcome::Later);
    const QUuid asideId = answerNext(Outcome::Dismissed, 0);
    EXPECT_EQ(store.topic(keptId)->status, TopicStatus::Program);
    EXPECT_EQ(store.topic(keptId)->correction->score, 9);
    EXPECT_EQ(store.topic(laterId)->status, TopicStatus::Reserve);
    EXPECT_FALSE(store.topic(laterId)->correction);
    EXPECT_EQ(store.topic(asideId)->status, TopicStatus::Dismissed);
    EXPECT_EQ(calibration.progress(), (Calibration::Progress{3, 10}));

    // Left and taken up again: another object, another day, the same place.
    Calibration later(preferences, store, history, clock);
    later.begin();
    EXPECT_EQ(later.progress(), (Calibration::Progress{3, 10}));
    for (int i = 0; i < 6; ++i) {
        answerNext(Outcome::Later);
    }
    EXPECT_FALSE(settings().calibrated);
    const TopicPtr last = calibration.next();
    EXPECT_TRUE(calibration.choose(last->id, Outcome::Kept));
    EXPECT_EQ(calibration.give(3), judgedScore(*last));
    EXPECT_TRUE(settings().calibrated);
    EXPECT_FALSE(calibration.next());

    EXPECT_EQ(calibration.takeBack(), last->id);
    EXPECT_EQ(*store.topic(last->id), *last);
    EXPECT_FALSE(settings().calibrated);
    EXPECT_EQ(calibration.next()->id, last->id);
}

TEST_F(CalibrationTest, counts_decisions_taken_elsewhere_and_ends_when_nothing_is_left) {
    fillInbox(4);
    store.keep(store.topics().first()->id); // before it begins: does not count
    clock.moment = clock.moment.addSecs(60);
    calibration.begin();
    EXPECT_EQ(calibration.progress(), (Calibration::Progress{0, 3}));
    store.dismiss(calibration.next()->id);
    answerNext(Outcome::Kept);
    EXPECT_EQ(calibration.progress(), (Calibration::Progress{2, 3}));
    EXPECT_FALSE(calibration.choose(QUuid::createUuid(), Outcome::Kept));
    answerNext(Outcome::Kept);
    EXPECT_TRUE(settings().calibrated);

    clock.moment = clock.moment.addSecs(60);
    calibration.beginAgain();
    EXPECT_EQ(calibration.progress(), (Calibration::Progress{0, 0}));
    EXPECT_FALSE(calibration.next());
}

} // namespace
} // namespace vorle
