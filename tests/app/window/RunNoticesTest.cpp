// What the app's runs and decisions come to in notifications, and where a tap on one leads.

#include "app/window/desktop/RunNotices.h"

#include "core/RunReport.h"
#include "search/run/SearchEngine.h"
#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

namespace vorle {
namespace {

using test::text;

class RunNoticesTest : public test::OpenWindow {
protected:
    void openWithNotices() {
        open();
        m_notices = std::make_unique<RunNotices>(
            RunNotices::Parts{*m_notifier, m_app->engine(), store(), *shell().program()});
        QObject::connect(m_notifier.get(), &Notifier::sectionAsked, m_main.get(),
                         &MainWindow::showSection);
    }
    /// A run of the engine's is over, and brought these.
    void endRun(const QList<Topic> &topics) {
        RunReport report;
        report.date = m_app->clock().now();
        report.topicIds = store().add(topics);
        report.added = int(topics.size());
        Q_EMIT m_app->engine().finished(report);
    }
    /// Its picture is drawn on another thread.
    void expectPosted(qsizetype notices) {
        test::spinUntil([&] { return m_notifications.posted.size() >= notices; });
        ASSERT_EQ(m_notifications.posted.size(), notices);
    }
    static Topic found(const char *title, int score) {
        Topic topic = test::sampleTopic(text(title));
        topic.score = score;
        return topic;
    }

    std::unique_ptr<RunNotices> m_notices;
};

TEST_F(RunNoticesTest, a_run_tells_what_it_brought_and_the_program_keeps_its_reminder) {
    m_notifications.keeps = true;
    m_app->preferences().change(&Settings::notifyReminder, true);
    openWithNotices();
    endRun({});
    EXPECT_TRUE(m_notifications.posted.isEmpty());
    endRun({found("Moins", 4), found("Mieux", 8)});
    expectPosted(1);
    EXPECT_EQ(m_notifications.posted[0].title, text("2 sujets à trier"));
    EXPECT_EQ(m_notifications.posted[0].body, text("Mieux"));
    Topic dismissed = found("Parti", 9);
    dismissed.status = TopicStatus::Dismissed; // before the run was over
    Topic urgent = found("Faille", 5);
    urgent.urgency = Judgment::Urgency{};
    urgent.urgency->level = Judgment::Urgency::Level::Now;
    endRun({dismissed, urgent, found("Autre", 7)});
    expectPosted(2);
    EXPECT_EQ(m_notifications.posted[1].title, text("2 autres sujets à trier"));
    EXPECT_EQ(m_notifications.posted[1].category, text("urgent"));
    EXPECT_EQ(m_notifications.posted[1].body, text("Urgent\u00A0: Faille"));
    Q_EMIT m_app->engine().failed({text("plus de place"), true, text("Codex")});
    EXPECT_EQ(m_notifications.posted[2].title, text("Je n’ai pas pu fouiller"));
    EXPECT_TRUE(m_notifications.posted[2].body.startsWith(text("Codex n’est plus connecté.")));

    EXPECT_TRUE(m_notifications.scheduled.isEmpty());
    store().keep(urgent.id);
    EXPECT_EQ(m_notifications.scheduled.size(), 1);
    store().markDone(urgent.id);
    EXPECT_TRUE(m_notifications.scheduled.isEmpty());
}

TEST_F(RunNoticesTest, a_tap_shows_the_section_whatever_lay_over_it) {
    fill();
    openWithNotices();
    press(Qt::Key_Comma, Qt::ControlModifier);
    ASSERT_TRUE(window().property("covered").toBool());
    window().hide();
    m_notifications.tap({text("reminder"), text("Programme"), {}});
    EXPECT_TRUE(window().isVisible());
    EXPECT_FALSE(window().property("covered").toBool());
    EXPECT_EQ(shell().sections()->current(), Section::Program);
    m_notifications.tap({text("ready"), text("À trier"), text("sort")});
    EXPECT_EQ(shell().sections()->current(), Section::Inbox);
    m_notifications.tap({text("ready"), text("$(goule)"), {}}); // not one of ours
    EXPECT_EQ(shell().sections()->current(), Section::Inbox);
}

} // namespace
} // namespace vorle
