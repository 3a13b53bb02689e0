#include "core/StoreLock.h"
#include "core/TopicStore.h"
#include "tests/core/Samples.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

/// What a hostile world does to the topics file: torn, replaced, full, killed in the middle.
namespace vorle {
namespace {

using test::contentsOf;
using test::fill;
using test::sampleTopic;

class StoreFaults : public testing::Test {
protected:
    std::unique_ptr<TopicStore> open() {
        return std::make_unique<TopicStore>(file, Resources(dir.path()), clock);
    }
    QList<Topic> onDisk() const { return json::decode<QList<Topic>>(contentsOf(file)); }
    QStringList names() const {
        return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    QTemporaryDir dir;
    QString file = dir.filePath(QStringLiteral("topics.json"));
    test::FixedClock clock;
};

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
        fill(file, bytes);
        auto store = open();
        EXPECT_EQ(store->count(), 0);
        ASSERT_TRUE(store->setAside());
        EXPECT_EQ(contentsOf(file), bytes) << "untouched before the first change";
        EXPECT_TRUE(
            store->setAside()->contains(QStringLiteral("topics.json.illisible-2026-11-02-")));
        store->add({sampleTopic(QStringLiteral("new"))});
        EXPECT_TRUE(store->flush());
        EXPECT_EQ(contentsOf(*store->setAside()), bytes);
        EXPECT_EQ(onDisk().size(), 1);
    }
    EXPECT_EQ(names().size(), 1 + std::ssize(broken)) << "each kept under a name of its own";
}

TEST_F(StoreFaults, makes_a_hand_edited_file_pretty_again_and_loses_nothing_it_knows) {
    Topic topic = sampleTopic(QStringLiteral("a"));
    QByteArray text = json::encode(QList<Topic>{topic, topic});
    text.replace("{\"id\"", "{\"from the future\":{\"x\":[1,2]},\"id\"");
    fill(file, text);
    auto store = open();
    ASSERT_EQ(store->count(), 2) << "an identity copied by hand loses no topic";
    EXPECT_EQ(*store->topic(topic.id), topic);
    store->keep(topic.id);
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(contentsOf(file), json::encode(onDisk(), json::Style::Pretty) + '\n');
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

TEST_F(StoreFaults, refuses_to_replace_what_is_no_file_and_never_hangs_on_it) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    auto store = open();
    store->add({sampleTopic(QStringLiteral("a"))});
    EXPECT_FALSE(store->flush());
    EXPECT_FALSE(QFileInfo(file).isFile());
    QFile::remove(file);
    EXPECT_TRUE(store->flush());
    ASSERT_TRUE(QFile::link(QStringLiteral("loop"), dir.filePath(QStringLiteral("loop"))));
    TopicStore looping(dir.filePath(QStringLiteral("loop")), Resources(), clock);
    looping.add({sampleTopic(QStringLiteral("a"))});
    EXPECT_FALSE(looping.flush());
}

TEST_F(StoreFaults, a_full_disk_leaves_the_old_file_whole) {
    auto store = open();
    store->add({sampleTopic(QStringLiteral("a"))});
    ASSERT_TRUE(store->flush());
    const QByteArray before = contentsOf(file);
    // A limit on a file's size fails a write in the middle, as a full disk does.
    const auto ignored = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    ::getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{4096, old.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    QList<Topic> many;
    for (int i = 0; i < 200; ++i) {
        many.append(sampleTopic(QString::number(i)));
    }
    store->add(many);
    const bool written = store->flush();
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, ignored);
    EXPECT_FALSE(written);
    EXPECT_EQ(contentsOf(file), before);
    EXPECT_EQ(names(), QStringList{QStringLiteral("topics.json")}) << "no half-written file stays";
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(onDisk().size(), 201);
}

TEST_F(StoreFaults, a_burst_of_changes_ends_in_the_last_state) {
    auto store = open();
    QList<Topic> many;
    for (int i = 0; i < 300; ++i) {
        many.append(sampleTopic(QString::number(i)));
    }
    const auto ids = store->add(many);
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 20; ++i) {
            const QUuid &id = ids[(round * 37 + i * 13) % ids.size()];
            i % 2 == 0 ? store->keep(id) : store->postpone(id);
        }
        EXPECT_TRUE(store->flush());
        QList<Topic> inMemory;
        for (const TopicPtr &topic : store->topics()) {
            inMemory.append(*topic);
        }
        EXPECT_EQ(onDisk(), inMemory);
    }
}

/// Saves without end, as fast as it can; never returns.
[[noreturn]] void saveForEver(const QString &file) {
    const SystemClock clock;
    TopicStore store(file, Resources(), clock);
    for (int i = 0;; ++i) {
        store.postpone(store.topics()[i % store.count()]->id);
        if (i % 5 == 0) {
            store.flush();
        }
    }
}

TEST_F(StoreFaults, killed_at_any_moment_the_file_holds_one_whole_state) {
    QList<Topic> many;
    for (int i = 0; i < 400; ++i) {
        many.append(sampleTopic(QString::number(i)));
    }
    open()->add(many);
    QRandomGenerator random(11);
    int moved = 0;
    for (int round = 0; round < 25; ++round) {
        const QByteArray before = contentsOf(file);
        const pid_t child = ::fork();
        if (child == 0) {
            StoreLock lock(file);
            if (!lock.tryLock()) {
                ::_exit(1);
            }
            saveForEver(file);
        }
        ::usleep(static_cast<useconds_t>(random.bounded(3'000, 60'000)));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the lock of the killed one was not released";
        ASSERT_EQ(onDisk().size(), many.size()) << "round " << round;
        moved += contentsOf(file) != before;
    }
    EXPECT_GT(moved, 0) << "no save ended: the test would prove nothing";
    open()->postpone(many[0].id);
    EXPECT_EQ(names(),
              (QStringList{QStringLiteral("topics.json"), QStringLiteral("topics.json.lock")}))
        << "what the killed ones left is swept";
}

} // namespace
} // namespace vorle
