#include "storage/StoreLock.h"
#include "tests/core/StoreFixture.h"

#include <QRandomGenerator>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

/// The topics file while it is written: killed, on a full disk, in a burst.
namespace vorle {
namespace {

using test::readFile;
using test::sampleTopic;
using test::writeFile;

class Saving : public test::StoreFixture {};

TEST_F(Saving, sweeps_what_dead_processes_left_and_nothing_else) {
    const QString id = QString(32, u'a');
    const QString dead = QStringLiteral("runs.json.vorle-999999999-") + id;
    const QString reused = QStringLiteral("topics.json.vorle-%1-").arg(::getpid()) + id;
    const QString alive = QStringLiteral("topics.json.vorle-4194000-") + id;
    const QStringList others{QStringLiteral("notes.vorle-12"),
                             QStringLiteral("a.vorle-1-") + u'z' + id,
                             QStringLiteral("topics.json.illisible-2026-11-02-103000")};
    for (const QString &name : QStringList{dead, reused, alive} + others) {
        writeFile(dir.filePath(name), "x");
    }
    const int held = ::open(QFile::encodeName(dir.filePath(alive)).constData(), O_RDONLY);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    open();
    QStringList left = others + QStringList{alive};
    left.sort();
    EXPECT_EQ(names(), left);
    ::close(held);
    open();
    EXPECT_FALSE(names().contains(alive));
    // The topics may lie elsewhere, behind a link: what lies beside them still lies here.
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("there")));
    ASSERT_TRUE(QFile::link(dir.filePath(QStringLiteral("there/topics.json")), file));
    writeFile(dir.filePath(dead), "x");
    writeFile(dir.filePath(QStringLiteral("there/") + reused), "x");
    open();
    EXPECT_FALSE(names().contains(dead));
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("there/") + reused)));
}

TEST_F(Saving, a_full_disk_leaves_the_old_file_whole) {
    auto store = open();
    store->add({sampleTopic(QStringLiteral("a"))});
    ASSERT_TRUE(store->flush());
    const QByteArray before = readFile(file);
    bool written = true;
    test::withFileSizeLimit(4096, [&] {
        QList<Topic> many;
        for (int i = 0; i < 200; ++i) {
            many.append(sampleTopic(QString::number(i)));
        }
        store->add(many);
        written = store->flush();
    });
    EXPECT_FALSE(written);
    EXPECT_EQ(readFile(file), before);
    EXPECT_EQ(names(), QStringList{QStringLiteral("topics.json")}) << "no half-written file stays";
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(onDisk().size(), 201);
}

TEST_F(Saving, a_burst_of_changes_ends_in_the_last_state) {
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

TEST_F(Saving, killed_at_any_moment_the_file_holds_one_whole_state) {
    QList<Topic> many;
    for (int i = 0; i < 400; ++i) {
        many.append(sampleTopic(QString::number(i)));
    }
    open()->add(many);
    QRandomGenerator random(11);
    int moved = 0;
    for (int round = 0; round < 25; ++round) {
        const QByteArray before = readFile(file);
        const pid_t child = ::fork();
        if (child == 0) {
            StoreLock lock(file);
            if (!lock.tryLock()) {
                ::_exit(1);
            }
            saveForEver(file);
        }
        // On a busy machine, longer: a save has to end now and then.
        const int patience = moved == 0 ? round + 1 : 1;
        ::usleep(static_cast<useconds_t>(random.bounded(3'000, 60'000) * patience));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the lock of the killed one was not released";
        ASSERT_EQ(onDisk().size(), many.size()) << "round " << round;
        moved += readFile(file) != before;
    }
    EXPECT_GT(moved, 0) << "no save ended: the test would prove nothing";
    open()->postpone(many[0].id);
    EXPECT_EQ(names(),
              (QStringList{QStringLiteral("topics.json"), QStringLiteral("topics.json.lock")}))
        << "what the killed ones left is swept";
}

} // namespace
} // namespace vorle
