#include "core/TopicsSaved.h"
#include "storage/DurableFile.h"
#include "tests/core/StoreFixture.h"
#include "tests/support/Wait.h"

#include <QFileInfo>
#include <QRandomGenerator>

#include <sys/resource.h>

#include <cerrno>

/// What a hostile world does to the topics file: torn, damaged, out of reach.
namespace vorle {
namespace {

using test::readFile;
using test::sampleTopic;
using test::writeFile;

class StoreFaults : public test::StoreFixture {};

TEST_F(StoreFaults, keeps_an_unreadable_file_until_and_beyond_the_first_save) {
    const QByteArray good = json::encode(QList<Topic>{sampleTopic(QStringLiteral("a"))});
    QByteArray garbage(3'000'000, '\0');
    QRandomGenerator random(7);
    for (char &byte : garbage) {
        byte = static_cast<char>(random.bounded(256));
    }
    const QByteArray broken[] = {
        "{\"topics\":[]}",
        good.chopped(1),
        QByteArray(good).replace("\"inbox\"", "\"boxed\""),
        QByteArray(good).replace("\"status\"", "\"state\""),
        QByteArray(2'000'000, '['),
        garbage,
    };
    for (const QByteArray &bytes : broken) {
        writeFile(file, bytes);
        auto store = open();
        EXPECT_EQ(store->count(), 0);
        ASSERT_TRUE(store->setAside());
        EXPECT_EQ(readFile(file), bytes) << "untouched before the first change";
        EXPECT_TRUE(
            store->setAside()->contains(QStringLiteral("topics.json.illisible-2026-11-02-")));
        store->add({sampleTopic(QStringLiteral("new"))});
        EXPECT_TRUE(store->flush());
        EXPECT_EQ(readFile(*store->setAside()), bytes);
        EXPECT_EQ(onDisk().size(), 1);
    }
    EXPECT_EQ(names().size(), 1 + std::ssize(broken)) << "each kept under a name of its own";
}

TEST_F(StoreFaults, makes_a_hand_edited_file_pretty_again_and_loses_nothing) {
    Topic topic = sampleTopic(QStringLiteral("a"));
    QByteArray text = json::encode(QList<Topic>{topic, topic});
    writeFile(file, text);
    auto store = open();
    ASSERT_EQ(store->count(), 2) << "an identity copied by hand loses no topic";
    EXPECT_EQ(*store->topic(topic.id), topic);
    store->keep(topic.id);
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(readFile(file), json::encode(onDisk(), json::Style::Pretty) + '\n');
    EXPECT_EQ(onDisk()[1].seenText, topic.seenText);
}

TEST_F(StoreFaults, keeps_the_topics_through_failed_saves_and_tries_again) {
    auto store = open();
    int saved = 0;
    QStringList failures;
    QObject::connect(store.get(), &TopicStore::saved, [&] { ++saved; });
    QObject::connect(store.get(), &TopicStore::saveFailed,
                     [&](const QString &text) { failures.append(text); });
    ASSERT_TRUE(QDir().mkdir(file)); // stands in for a disk that refuses
    const QUuid id = store->add({sampleTopic(QStringLiteral("a"))}).first();
    EXPECT_FALSE(store->flush());
    EXPECT_TRUE(store->saveError());
    test::spinUntil([&] { return failures.size() == 2; });
    EXPECT_TRUE(failures[0].startsWith(QStringLiteral("Le dernier enregistrement")))
        << failures[0].toStdString();
    EXPECT_EQ(saved, 0);
    ASSERT_TRUE(QDir().rmdir(file));
    EXPECT_TRUE(store->flush());
    EXPECT_FALSE(store->saveError());
    EXPECT_EQ(onDisk().value(0).id, id);
    test::spinUntil([&] { return saved == 1; });
    EXPECT_EQ(names(), QStringList{QStringLiteral("topics.json")});
}

TEST_F(StoreFaults, a_save_is_awaited_with_the_event_loop_turning_and_tried_again) {
    auto store = open();
    EXPECT_TRUE(test::waitFor(topicsSaved(*store))) << "there is nothing to save";
    ASSERT_TRUE(QDir().mkdir(file));
    store->add({sampleTopic(QStringLiteral("a"))});
    EXPECT_FALSE(test::waitFor(topicsSaved(*store)));
    ASSERT_TRUE(QDir().rmdir(file));
    EXPECT_TRUE(test::waitFor(topicsSaved(*store)));
    EXPECT_EQ(onDisk().size(), 1);
    // Who waits for a disk that takes its time can leave.
    store->add({sampleTopic(QStringLiteral("b"))});
    CancelSource stop;
    Task<bool> waiting = topicsSaved(*store, stop.token());
    EXPECT_FALSE(waiting.isReady());
    stop.cancel();
    EXPECT_THROW(test::waitFor(std::move(waiting)), Cancelled);
    EXPECT_TRUE(test::waitFor(topicsSaved(*store)));
    EXPECT_EQ(onDisk().size(), 2);
}

TEST_F(StoreFaults, refuses_to_run_on_what_the_system_does_not_let_it_read) {
    const QByteArray healthy = json::encode(QList<Topic>{sampleTopic(QStringLiteral("a"))});
    const auto refusal = [&] {
        try {
            open();
        } catch (const std::system_error &error) {
            EXPECT_NE(QString::fromUtf8(error.what()).indexOf(dir.path()), -1) << error.what();
            return error.code().value();
        }
        return 0;
    };
    ASSERT_EQ(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_EQ(refusal(), EINVAL) << "a pipe, which is never waited on";
    QFile::remove(file);
    ASSERT_TRUE(QDir().mkdir(file));
    EXPECT_EQ(refusal(), EISDIR);
    QDir().rmdir(file);
    ASSERT_TRUE(QFile::link(QStringLiteral("topics.json"), file));
    EXPECT_EQ(refusal(), ELOOP);
    QFile::remove(file);
    writeFile(file, healthy);
    rlimit old{};
    ::getrlimit(RLIMIT_NOFILE, &old);
    const rlimit none{0, old.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    const int withoutDescriptors = refusal();
    ::setrlimit(RLIMIT_NOFILE, &old);
    EXPECT_EQ(withoutDescriptors, EMFILE);
    if (::geteuid() != 0) {
        ::chmod(QFile::encodeName(file).constData(), 0);
        EXPECT_EQ(refusal(), EACCES);
        ::chmod(QFile::encodeName(file).constData(), 0600);
    }
    EXPECT_EQ(readFile(file), healthy);
    EXPECT_EQ(open()->count(), 1);
    EXPECT_EQ(names(), QStringList{QStringLiteral("topics.json")}) << "nothing set aside";
}

TEST_F(StoreFaults, offers_what_can_be_read_of_a_damaged_file) {
    QList<Topic> many;
    for (int i = 0; i < 40; ++i) {
        many.append(sampleTopic(QString::number(i)));
    }
    const QByteArray whole = json::encode(many, json::Style::Pretty) + '\n';
    const qsizetype third = whole.indexOf("\n  {", whole.indexOf("\n  {", 3) + 1);
    QByteArray zeroed = whole;
    zeroed.replace(third - 60, 120, QByteArray(120, '\0'));
    QByteArray unclosed = whole;
    unclosed.remove(unclosed.indexOf("\"Page\"") + 5, 1);
    QByteArray unbalanced = whole;
    unbalanced.remove(unbalanced.indexOf("\n  }", third) + 3, 1);
    const struct {
        const char *what;
        QByteArray bytes;
        qsizetype kept;
        qsizetype left;
    } cases[] = {
        {"one unknown word", QByteArray(whole).replace(whole.indexOf("\"inbox\""), 7, "\"in\""), 39,
         1},
        {"one key absent", QByteArray(whole).replace(whole.indexOf("\"title\""), 7, "\"titel\""),
         39, 1},
        {"torn in the last", whole.first(whole.size() - 40), 39, 1},
        {"torn between two", whole.first(third), 2, 0},
        {"without its first line", whole.sliced(2), 40, 0},
        {"a hole across two", zeroed, 38, 1},
        {"a text that never ends", unclosed, 39, 1},
        {"a brace lost", unbalanced, 39, 1},
        {"bytes that are no UTF-8",
         QByteArray(whole).replace(whole.indexOf("sum"), 3, "\xFF\xFE\xFD"), 39, 1},
        {"in an object", "{\"topics\": " + whole + "}", 40, 0},
        {"on one line", json::encode(many).replace("\"title\":\"7\"", "\"title\":7"), 39, 1},
        {"a comma too many", QByteArray(whole).replace(whole.size() - 3, 1, ",\n"), 40, 0},
        {"nothing of ours", "what is this?", 0, 0},
        {"braces without end", QByteArray(200'000, '{'), 0, 1},
    };
    for (const auto &[what, bytes, kept, left] : cases) {
        SCOPED_TRACE(what);
        writeFile(file, bytes);
        auto store = open();
        EXPECT_EQ(store->count(), 0) << "never loaded by itself";
        ASSERT_TRUE(store->readable());
        EXPECT_EQ(store->readable()->topics.size(), kept);
        EXPECT_EQ(store->readable()->left, left);
        EXPECT_TRUE(store->notice());
        const QUuid came = store->add({sampleTopic(QStringLiteral("came since"))}).first();
        EXPECT_EQ(store->repair(), kept);
        EXPECT_EQ(store->repair(), 0) << "once";
        EXPECT_TRUE(store->flush());
        EXPECT_EQ(readFile(*store->setAside()), bytes);
        EXPECT_EQ(onDisk().size(), kept + 1);
        EXPECT_EQ(onDisk().last().id, came);
        for (const Topic &topic : onDisk().first(kept)) {
            EXPECT_TRUE(many.contains(topic));
        }
    }
    writeFile(file, {});
    EXPECT_TRUE(open()->notice()) << "an empty file is told";
    EXPECT_FALSE(open()->readable());
}

TEST_F(StoreFaults, reports_that_the_system_does_not_let_be_read_are_not_replaced) {
    const QString runs = dir.filePath(QStringLiteral("runs.json"));
    writeFile(runs, "[]");
    ASSERT_TRUE(QFile::resize(runs, maxFileBytes + 1)); // more than it reads
    RunReport report;
    report.date = clock.moment;
    open()->addRun(report);
    EXPECT_EQ(QFileInfo(runs).size(), maxFileBytes + 1);
    EXPECT_EQ(names(), QStringList{QStringLiteral("runs.json")}) << "nothing set aside either";
}

} // namespace
} // namespace vorle
