// The snapshot for widgets and bars, and the file that it is kept in.

#include "desktop/WidgetPublisher.h"

#include "tests/core/Samples.h"
#include "tests/support/HostileTexts.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::text;

class WidgetTest : public testing::Test {
protected:
    WidgetPublisher::Parts parts() {
        return {.store = store,
                .preferences = preferences,
                .clock = clock,
                .file = path("partage/widget.json"),
                .pictures = folder.path(),
                .published = [this] { ++published; },
                .zone = QTimeZone::utc()};
    }
    QString path(const char *name) const { return folder.filePath(text(name)); }
    QByteArray bytes() const { return test::readFile(path("partage/widget.json")); }
    WidgetSnapshot written() const { return json::decode<WidgetSnapshot>(bytes()); }
    WidgetSnapshot snapshot(const QList<Topic> &topics) const {
        QList<TopicPtr> shared;
        for (const Topic &topic : topics) {
            shared += std::make_shared<const Topic>(topic);
        }
        return widgetSnapshot({.topics = shared,
                               .weeklyMinutes = 180,
                               .accent = Accent::Lagune,
                               .nextSearch = clock.now().addDays(5),
                               .searching = true,
                               .now = clock.now(),
                               .zone = QTimeZone::utc(),
                               .pictures = folder.path()});
    }

    QTemporaryDir folder;
    test::FixedClock clock; // Monday 2 November 2026, 9:30
    Preferences preferences{std::make_unique<SettingsFile>(folder.filePath(text("settings.json")))};
    TopicStore store{folder.filePath(text("topics.json")), Resources{text(VORLE_RESOURCES)}, clock};
    int published = 0;
};

TEST_F(WidgetTest, says_what_waits_what_is_kept_and_how_far_the_week_is) {
    QList<Topic> topics;
    for (int i = 0; i < 11; ++i) {
        Topic topic = test::sampleTopic(text("à trier %1").arg(i));
        topic.score = i;
        topics += topic;
    }
    topics[2].urgency =
        Judgment::Urgency{.level = Judgment::Urgency::Level::Now, .date = {}, .reason = {}};
    topics[3].readLevel = ReadLevel::None;
    topics[10].project = text("Potager");
    topics[10].triagedAt = clock.now(); // put back from elsewhere
    topics[9].gallery = {{text("https://x"), text("image.png")},
                         {text("https://x"), text("../settings.json")},
                         {text("https://x"), text("absente.png")}};
    test::writeFile(path("image.png"), "x");
    Topic done = test::sampleTopic(text("fait"), TopicStatus::Done);
    done.doneAt = clock.now();
    Topic before = done;
    before.doneAt = clock.now().addDays(-8);
    topics += {test::sampleTopic(text("gardé"), TopicStatus::Program), done, before,
               test::sampleTopic(text("lu"), TopicStatus::Pending)};
    const WidgetSnapshot now = snapshot(topics);
    EXPECT_EQ(now.toSortCount, 11);
    ASSERT_EQ(now.toSort.size(), WidgetSnapshot::maxItems);
    EXPECT_EQ(now.toSort[0].title, text("à trier 2")) << "urgent ones first";
    EXPECT_EQ(now.toSort[1].score, 10);
    EXPECT_EQ(now.toSort[1].detail, text("Potager · 20\u00A0min"));
    EXPECT_FALSE(now.toSort[1].unread);
    EXPECT_TRUE(now.toSort[2].unread);
    EXPECT_EQ(now.toSort[2].gallery, QList<QString>{path("image.png")});
    EXPECT_EQ(now.programCount, 1);
    EXPECT_EQ(now.weekDone, 20);
    EXPECT_EQ(now.weekPlanned, 20);
    EXPECT_EQ(now.weekBudget, 180);
    EXPECT_EQ(now.weekDoneCount, 1);
    EXPECT_TRUE(now.weekLabel.startsWith(text("Semaine du "))) << now.weekLabel.toStdString();
    EXPECT_EQ(now.weekLeftLabel, text("Il te reste 2\u00A0h\u00A040"));
    EXPECT_EQ(now.weekBudgetLabel, text("sur 3\u00A0h"));
    EXPECT_EQ(now.nextSearch->label, text("dans 5 jours"));
    EXPECT_TRUE(now.searching);
    EXPECT_EQ(now.accent.light, text("#0E7268"));
    const QByteArray encoded = json::encode(now);
    qsizetype at = -1;
    for (const char *key :
         {"toSort", "toSortCount", "program", "programCount", "weekDone", "weekPlanned",
          "weekBudget", "weekDoneCount", "weekLabel", "weekLeftLabel", "weekBudgetLabel",
          "nextSearch", "searching", "accent"}) {
        const qsizetype next = encoded.indexOf('"' + QByteArray(key) + "\":");
        EXPECT_GT(next, at) << key;
        at = next;
    }
}

TEST_F(WidgetTest, a_moment_is_said_as_seen_from_now) {
    const QDateTime now(QDate(2026, 11, 2), QTime(23, 30), QTimeZone("Europe/Paris"));
    const struct {
        qint64 seconds;
        const char *label;
    } cases[] = {
        {0, "aujourd’hui, dans 1\u00A0min"},
        {61, "aujourd’hui, dans 2\u00A0min"},
        {1799, "aujourd’hui, dans 30\u00A0min"},
        {1800, "demain"}, // past midnight
        {-60, "23:29"},
        {-15 * 3600 - 25 * 60, "8:05"},
        {47 * 3600, "dans 2 jours"},
        {-24 * 3600, "hier"},
        {-3 * 24 * 3600, "30 octobre"},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(relativeTimeText(now.addSecs(each.seconds), now, now.timeZone()),
                  text(each.label))
            << each.seconds;
    }
    EXPECT_EQ(relativeTimeText(now.addDays(-1), now.addDays(2), now.timeZone()),
              text("1er novembre"));
    const QDateTime morning(QDate(2026, 11, 2), QTime(8, 0), QTimeZone("Europe/Paris"));
    EXPECT_EQ(relativeTimeText(morning.addSecs(3600), morning, morning.timeZone()),
              text("aujourd’hui, dans 60\u00A0min"));
    EXPECT_EQ(relativeTimeText(morning.addSecs(3601), morning, morning.timeZone()), text("9:00"));
}

TEST_F(WidgetTest, many_changes_are_few_writes_and_the_last_state_lands) {
    WidgetPublisher publisher(parts());
    EXPECT_FALSE(QFile::exists(path("partage/widget.json"))) << "nothing is written at once";
    test::waitFor(publisher.ended());
    EXPECT_EQ(written().toSortCount, 0);
    EXPECT_EQ(published, 1);
    for (int i = 0; i < 300; ++i) {
        store.add({test::sampleTopic(QString::number(i))});
        QCoreApplication::processEvents();
    }
    test::waitFor(publisher.ended());
    EXPECT_EQ(written().toSortCount, 300);
    EXPECT_LE(published, 1 + 1 + 30) << "far fewer than the changes";
    EXPECT_EQ(QDir(path("partage")).entryList(QDir::Files), QStringList{text("widget.json")});
    const int before = published;
    publisher.publish();
    test::waitFor(publisher.ended());
    EXPECT_EQ(published, before) << "nothing changed";
    publisher.setSearching(true);
    test::waitFor(publisher.ended());
    EXPECT_TRUE(written().searching);
    publisher.setSearching(false);
    preferences.change(&Settings::weeklyMinutes, 60);
    publisher.flush(std::chrono::seconds(10)); // a session that ends
    EXPECT_FALSE(written().searching);
    EXPECT_EQ(written().weekBudget, 60);
}

TEST_F(WidgetTest, a_write_that_ends_late_is_told_and_what_a_killed_run_left_goes) {
    WidgetSnapshot left = snapshot({});
    ASSERT_TRUE(left.searching);
    test::writeFile(path("partage/widget.json"), json::encode(left));
    QList<Topic> topics;
    for (int i = 0; i < 20'000; ++i) {
        topics += test::sampleTopic(QString::number(i));
    }
    store.add(topics);
    WidgetPublisher::Parts impatient = parts();
    impatient.patience = std::chrono::milliseconds(20); // so many take longer
    WidgetPublisher publisher(std::move(impatient));
    test::spinUntil([&] { return published == 1; });
    EXPECT_FALSE(written().searching);
    EXPECT_EQ(written().toSortCount, 20'000);
    test::waitFor(publisher.ended());
    EXPECT_EQ(published, 1);
}

TEST_F(WidgetTest, a_disk_that_refuses_harms_nothing_and_the_next_change_is_written) {
    test::writeFile(path("partage"), "a file where the folder would be");
    WidgetPublisher publisher(parts());
    test::waitFor(publisher.ended());
    QFile::remove(path("partage"));
    store.add({test::sampleTopic(text("a"))});
    test::waitFor(publisher.ended());
    const QByteArray whole = bytes();
    EXPECT_EQ(written().toSortCount, 1);
    test::withFileSizeLimit(100, [&] {
        store.add({test::sampleTopic(text("b"))});
        test::waitFor(publisher.ended());
    });
    EXPECT_EQ(bytes(), whole) << "never half of one";
    publisher.publish();
    test::waitFor(publisher.ended());
    EXPECT_EQ(written().toSortCount, 2);
}

TEST_F(WidgetTest, strangers_titles_are_one_line_each) {
    const QStringList texts = test::hostileTexts().first(200);
    QList<Topic> topics;
    for (const QString &hostile : texts) {
        Topic topic = test::sampleTopic(hostile + QString(9000, u'y'));
        topic.project = hostile;
        topic.gallery = {{{}, hostile}, {{}, text("../") + hostile}};
        const WidgetSnapshot now = snapshot({topic});
        const WidgetSnapshot::Item &item = now.toSort.first();
        EXPECT_EQ(json::decode<WidgetSnapshot>(json::encode(now)), now);
        for (const QString &shown : {item.title, item.detail}) {
            EXPECT_LE(shown.size(), 700);
            EXPECT_FALSE(std::ranges::any_of(shown, [](QChar c) {
                return c.category() == QChar::Other_Control || c == u'\u2028' || c == u'\u202E';
            })) << shown.toStdString();
        }
        EXPECT_TRUE(item.gallery.isEmpty());
    }
}

} // namespace
} // namespace vorle
