#include "core/WeekProgram.h"
#include "core/DurationText.h"
#include "core/NumberText.h"
#include "tests/core/Samples.h"

#include <gtest/gtest.h>

#include <climits>
#include <deque>

namespace vorle {
namespace {

using test::sampleTopic;

const Period week{QDateTime(QDate(2026, 11, 2), QTime(0, 0), Qt::UTC),
                  QDateTime(QDate(2026, 11, 9), QTime(0, 0), Qt::UTC)};

class WeekProgramTest : public testing::Test {
protected:
    Topic &kept(const char *title, int score, int minutes) {
        return add(title, TopicStatus::Program, score, minutes);
    }
    Topic &done(const char *title, int minutes, const QDateTime &at) {
        Topic &topic = add(title, TopicStatus::Done, 7, minutes);
        topic.doneAt = at;
        return topic;
    }
    static void makeUrgent(Topic &topic) {
        topic.urgency = Judgment::Urgency{Judgment::Urgency::Level::Now, {}, {}};
    }
    WeekProgram program(int budget) const {
        QList<TopicPtr> topics;
        for (const Topic &topic : m_topics) {
            topics.append(std::make_shared<const Topic>(topic));
        }
        return weekProgram(topics, budget, week);
    }
    /// "ab|c": what fits, the line, what waits.
    static QString shown(const WeekProgram &program) {
        QString text;
        for (const TopicPtr &topic : program.fits) {
            text += topic->title;
        }
        text += u'|';
        for (const TopicPtr &topic : program.waits) {
            text += topic->title;
        }
        return text;
    }

    std::deque<Topic> m_topics;

private:
    Topic &add(const char *title, TopicStatus status, int score, int minutes) {
        Topic topic = sampleTopic(QString::fromLatin1(title), status);
        topic.score = score;
        topic.minutes = minutes;
        m_topics.push_back(topic);
        return m_topics.back();
    }
};

TEST_F(WeekProgramTest,
       fills_the_week_by_urgency_then_score_and_lets_short_topics_pass_a_long_one) {
    kept("a", 5, 30);
    kept("b", 9, 90);
    kept("c", 8, 100);
    kept("d", 7, 60);
    makeUrgent(kept("e", 4, 20));
    const WeekProgram now = program(180);
    EXPECT_EQ(shown(now), QStringLiteral("ebd|ca"));
    EXPECT_EQ(now.planned, 170);
    EXPECT_EQ(now.left, 180);
    EXPECT_EQ(now.state, WeekProgram::State::InProgress);
    EXPECT_EQ(shown(program(200)), QStringLiteral("ebda|c"));
    EXPECT_EQ(shown(program(300)), QStringLiteral("ebcda|"));
}

TEST_F(WeekProgramTest, an_urgent_topic_fits_even_past_the_budget_and_the_others_wait_for_it) {
    kept("a", 9, 10);
    makeUrgent(kept("u", 3, 200));
    const WeekProgram now = program(120);
    EXPECT_EQ(shown(now), QStringLiteral("u|a"));
    EXPECT_EQ(now.excess(), 80);
    EXPECT_TRUE(programText(now, {}).text.contains(durationText(80)));
    EXPECT_EQ(shown(program(0)), QStringLiteral("u|a"));
    EXPECT_EQ(shown(program(-5)), QStringLiteral("u|a"));
}

TEST_F(WeekProgramTest, a_correction_moves_a_topic_by_the_users_own_score) {
    kept("a", 9, 60);
    kept("b", 5, 60).correction = Correction{10, {}, {}, {}};
    EXPECT_EQ(shown(program(60)), QStringLiteral("b|a"));
}

// What is done keeps its place in the week: nothing crosses the line when a topic is finished.
TEST_F(WeekProgramTest, minutes_done_this_week_count_and_those_of_other_weeks_do_not) {
    kept("a", 9, 60);
    kept("b", 8, 60);
    kept("c", 7, 60);
    EXPECT_EQ(shown(program(120)), QStringLiteral("ab|c"));
    m_topics.front().status = TopicStatus::Done;
    m_topics.front().doneAt = week.begin;
    done("old", 500, week.begin.addMSecs(-1));
    done("next", 500, week.end);
    done("undated", 500, {}).doneAt.reset();
    const WeekProgram now = program(120);
    EXPECT_EQ(shown(now), QStringLiteral("b|c"));
    EXPECT_EQ(now.done, 60);
    EXPECT_EQ(now.left, 60);
    EXPECT_EQ(now.planned, 60);
}

TEST_F(WeekProgramTest, numbers_of_a_file_edited_by_hand_do_no_harm) {
    for (int i = 0; i < 3; ++i) {
        done("done", INT_MAX, week.begin);
        kept("kept", 9, INT_MAX);
    }
    kept("negative", 8, INT_MIN);
    const WeekProgram now = program(INT_MAX);
    EXPECT_GT(now.done, 0);
    EXPECT_GT(now.planned, 0);
    EXPECT_EQ(now.waits.size(), 0);
    EXPECT_EQ(program(60).left, 0);
    EXPECT_EQ(shown(program(60)), QStringLiteral("negative|keptkeptkept"));
}

TEST_F(WeekProgramTest, says_what_state_it_is_in) {
    EXPECT_EQ(program(180).state, WeekProgram::State::Empty);
    done("old", 30, week.begin.addDays(-1));
    EXPECT_EQ(programText(program(180), {}).title, QStringLiteral("Ton programme est vide."));
    EXPECT_EQ(programText(program(180), {}).text,
              QStringLiteral("Ce que tu gardes au tri arrive ici, rangé par urgence et par note."));

    done("now", 100, week.begin);
    const ProgramText over = programText(program(180), QStringLiteral("lundi à 8:00"));
    EXPECT_EQ(over.title, QStringLiteral("Programme fini, il te reste 1\u00A0h\u00A020"));
    EXPECT_EQ(over.text,
              QStringLiteral("Tout ce que tu as gardé est fait. Je peux fouiller maintenant pour "
                             "remplir le reste de ta semaine, sans attendre lundi à 8:00."));
    EXPECT_TRUE(programText(program(180), {}).text.endsWith(u"le reste de ta semaine."));
    // A full week is not offered to be filled.
    EXPECT_EQ(programText(program(90), {}).text,
              QStringLiteral("Tout ce que tu as gardé est fait."));

    kept("a", 9, 90);
    const WeekProgram full = program(180);
    EXPECT_EQ(shown(full), QStringLiteral("|a"));
    EXPECT_EQ(programText(full, {}).title, QStringLiteral("Ta semaine est pleine"));
    kept("b", 8, 20);
    EXPECT_EQ(programText(program(180), {}).title, QStringLiteral("1 sujet, 20\u00A0min"));
    EXPECT_EQ(programText(program(180), {}).text,
              QStringLiteral("Déjà fait\u00A0: 1\u00A0h\u00A040 sur 3\u00A0h. Il te reste "
                             "1\u00A0h\u00A020."));
    std::erase_if(m_topics, [](const Topic &topic) { return topic.status == TopicStatus::Done; });
    const ProgramText fresh = programText(program(180), {});
    EXPECT_EQ(fresh.title + fresh.text, QStringLiteral("2 sujets, 1\u00A0h\u00A050 sur 3\u00A0h"));
}

TEST(NumberText, keeps_its_groups_together) {
    EXPECT_EQ(numberText(12), QStringLiteral("12"));
    EXPECT_EQ(numberText(1430), QStringLiteral("1\u202F430"));
    EXPECT_EQ(numberText(1234567), QStringLiteral("1\u202F234\u202F567"));
}

TEST(DurationText, is_french) {
    const std::pair<int, QStringView> cases[] = {
        {-5, u"0 min"},  {0, u"0 min"},    {45, u"45 min"},  {60, u"1 h"},
        {80, u"1 h 20"}, {125, u"2 h 05"}, {6000, u"100 h"},
    };
    for (const auto &[minutes, text] : cases) {
        EXPECT_EQ(durationText(minutes), text.toString().replace(u' ', QChar(QChar::Nbsp)));
    }
}

} // namespace
} // namespace vorle
