// Links that other programs drop, from their files to the topics on disk.

#include "app/window/desktop/SharedLinks.h"

#include "tests/support/AppInProcess.h"
#include "tests/support/Files.h"
#include "tests/support/HostileNames.h"
#include "tests/support/HostileTexts.h"
#include "tests/support/Wait.h"

#include <QDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

class SharedLinksTest : public testing::Test {
protected:
    SharedLinksTest() {
        app.program.agent.signOut(); // they wait
        inbox = app->sharedPath(QStringLiteral("Inbox"));
        QDir().mkpath(inbox);
    }
    ~SharedLinksTest() override { close(); }

    void open() {
        links = std::make_unique<SharedLinks>(
            SharedLinks::Parts{app->preferences(), app->store(), app->capture(), inbox,
                               app->sharedPath(QStringLiteral("projects.json"))},
            ShareInbox::Pace{std::chrono::milliseconds(50), std::chrono::milliseconds(50)});
    }
    void close() {
        if (links) {
            test::waitFor(links->stopped());
            links.reset();
        }
    }
    void drop(const SharedItem &item) const { InboxFolder(inbox).drop(item); }
    qsizetype waiting() const {
        return QDir(inbox).entryList({QStringLiteral("*.json")}, QDir::Files).size();
    }
    QList<Topic> onDisk() const {
        const QByteArray bytes = test::readFile(app->topicsFile());
        return bytes.isEmpty() ? QList<Topic>() : json::decode<QList<Topic>>(bytes);
    }

    test::AppInProcess app;
    QString inbox;
    std::unique_ptr<SharedLinks> links;
};

TEST_F(SharedLinksTest, whatever_is_dropped_is_on_disk_before_its_file_goes) {
    QStringList texts = test::hostileTexts() + test::hostileNames();
    for (qsizetype i = 0; i < texts.size(); ++i) {
        drop({.title = texts[i],
              .url = QStringLiteral("https://example.org/%1").arg(i),
              .note = texts[i],
              .project = texts[i],
              .pageText = texts[i]});
    }
    drop({.url = QStringLiteral("https://example.org/0"), .note = QStringLiteral("encore")});
    open();
    test::spinUntil([&] { return waiting() == 0; });
    const QList<Topic> kept = onDisk();
    ASSERT_EQ(kept.size(), texts.size());
    for (const Topic &topic : kept) {
        EXPECT_TRUE(isBeingRead(topic));
        EXPECT_TRUE(topic.sharedAt);
        EXPECT_FALSE(topic.title.contains(u'\n') || topic.title.contains(u'\u202E') ||
                     topic.title.contains(u'\033'));
    }
    EXPECT_TRUE(kept.first().note->endsWith(u"\nencore"));
}

TEST_F(SharedLinksTest, a_full_disk_or_an_end_between_two_steps_loses_and_doubles_nothing) {
    drop({.url = QStringLiteral("https://example.org/a"), .note = QStringLiteral("n")});
    const QByteArray bytes =
        test::readFile(inbox + u'/' + QDir(inbox).entryList({QStringLiteral("*.json")}).first());
    int failures = 0;
    QObject::connect(&app->store(), &TopicStore::saveFailed, &app->store(), [&] { ++failures; });
    test::withFileSizeLimit(100, [&] {
        open();
        test::spinUntil([&] { return failures >= 2; }); // it tries again by itself
        EXPECT_EQ(waiting(), 1);
        EXPECT_TRUE(onDisk().isEmpty());
    });
    test::spinUntil([&] { return waiting() == 0; });
    EXPECT_EQ(onDisk().size(), 1);
    close();

    // Killed once the topics were saved: the file is still there at the next start.
    test::writeFile(inbox + QStringLiteral("/again.json"), bytes);
    open();
    test::spinUntil([&] { return waiting() == 0; });
    ASSERT_EQ(onDisk().size(), 1);
    EXPECT_EQ(onDisk().first().note, QStringLiteral("n"));
}

TEST_F(SharedLinksTest, what_is_decided_while_the_disk_is_full_stands) {
    drop({.url = QStringLiteral("https://example.org/a"),
          .note = QStringLiteral("n"),
          .sharedAt = QDateTime::currentDateTimeUtc()});
    int failures = 0;
    QObject::connect(&app->store(), &TopicStore::saveFailed, &app->store(), [&] { ++failures; });
    test::withFileSizeLimit(100, [&] {
        open();
        test::spinUntil([&] { return failures >= 1; });
        const QUuid id = app->store().topics().first()->id;
        app->store().setNote(id, QStringLiteral("autre"));
        app->store().dismiss(id);
        test::spinUntil([&] { return failures >= 4; });
    });
    test::spinUntil([&] { return waiting() == 0; });
    ASSERT_EQ(onDisk().size(), 1);
    EXPECT_EQ(onDisk().first().note, QStringLiteral("autre"));
    EXPECT_EQ(onDisk().first().status, TopicStatus::Dismissed);
}

TEST_F(SharedLinksTest, no_drop_replaces_a_damaged_topics_file) {
    Topic topic;
    topic.id = QUuid::createUuid();
    topic.title = QStringLiteral("un");
    topic.foundAt = QDateTime::currentDateTimeUtc();
    const QByteArray damaged = json::encode(QList<Topic>{topic}).chopped(1) + ",{\"id\":";
    test::writeFile(app->topicsFile(), damaged);
    drop({.url = QStringLiteral("https://example.org/a")});
    ASSERT_TRUE(app->store().isDamaged());
    open();
    QStringList told;
    QObject::connect(links.get(), &SharedLinks::told, links.get(),
                     [&](const QString &sentence) { told += sentence; });
    test::spinUntil([&] { return !told.isEmpty(); });
    links->look();
    test::settle();
    EXPECT_EQ(waiting(), 1);
    EXPECT_EQ(test::readFile(app->topicsFile()), damaged);
    EXPECT_EQ(told.size(), 1);
    EXPECT_EQ(app->store().repair(), 1);
    test::spinUntil([&] { return waiting() == 0; });
    EXPECT_EQ(onDisk().size(), 2);
}

TEST_F(SharedLinksTest, what_is_no_link_is_told_as_what_it_is_and_kept) {
    const struct {
        int noLinks;
        int large;
        const char *said;
    } cases[] = {
        {1, 0, "Un fichier déposé ne contient aucun lien. Je le garde ici\u00A0: "},
        {0, 1,
         "Un fichier déposé est trop lourd pour un lien (plus de 4\u00A0Mo). Je le garde "
         "ici\u00A0: "},
        {2, 3,
         "2 fichiers déposés ne contiennent aucun lien. 3 fichiers déposés sont trop lourds pour "
         "des liens (plus de 4\u00A0Mo). Je les garde ici\u00A0: "},
    };
    for (const auto &each : cases) {
        QStringList told;
        for (int i = 0; i < each.noLinks; ++i) {
            test::writeFile(inbox + QStringLiteral("/%1.json").arg(i), "{");
        }
        for (int i = 0; i < each.large; ++i) {
            QFile file(inbox + QStringLiteral("/large%1.json").arg(i));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(50'000'000));
        }
        open();
        QObject::connect(links.get(), &SharedLinks::told, links.get(),
                         [&](const QString &sentence) { told += sentence; });
        test::spinUntil([&] { return !told.isEmpty(); });
        EXPECT_EQ(told.join(u'\n'),
                  QString::fromUtf8(each.said) + inbox + QStringLiteral("/illisibles"));
        close();
    }
    EXPECT_EQ(app->store().count(), 0);
    EXPECT_EQ(QDir(inbox + QStringLiteral("/illisibles")).entryList(QDir::Files).size(), 7);
}

} // namespace
} // namespace vorle
