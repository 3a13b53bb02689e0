#include "core/DurableFile.h"
#include "core/RediscoveryLog.h"
#include "core/ScoreProvenanceLog.h"
#include "core/StoreLock.h"
#include "core/TopicStore.h"
#include "tests/core/Samples.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
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

TEST_F(StoreFaults, makes_a_hand_edited_file_pretty_again_and_loses_nothing) {
    Topic topic = sampleTopic(QStringLiteral("a"));
    QByteArray text = json::encode(QList<Topic>{topic, topic});
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
    fill(file, healthy);
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
    EXPECT_EQ(contentsOf(file), healthy);
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
        fill(file, bytes);
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
        EXPECT_EQ(contentsOf(*store->setAside()), bytes);
        EXPECT_EQ(onDisk().size(), kept + 1);
        EXPECT_EQ(onDisk().last().id, came);
        for (const Topic &topic : onDisk().first(kept)) {
            EXPECT_TRUE(many.contains(topic));
        }
    }
    fill(file, {});
    EXPECT_TRUE(open()->notice()) << "an empty file is told";
    EXPECT_FALSE(open()->readable());
}

TEST_F(StoreFaults, keeps_what_a_later_version_wrote) {
    QByteArray text =
        json::encode(QList<Topic>{sampleTopic(QStringLiteral("a"))}, json::Style::Pretty);
    text.replace("\"gallery\"", "\"future\": {\n      \"x\": [1, 2.50, 1e3, \"\\u00e9\"]\n    },\n"
                                "    \"gallery\"");
    text.replace("\"title\": \"Page\"",
                 "\"since\": 12345678901234567890,\n        \"title\": \"Page\"");
    text.replace("\"why\"", "\"vu\": null,\n    \"why\"");
    // In the records inside it too.
    text.replace("\"firstStep\"", R"("brief": {
      "details": [],
      "essentials": [
        {
          "body": "b",
          "images": [
            1
          ],
          "title": "t"
        }
      ],
      "model": "m",
      "sources": [
        {
          "adds": "a",
          "read": true,
          "title": "t",
          "url": "https://example.org/"
        }
      ],
      "unclear": []
    },
    "criteria": {
      "actionability": 1,
      "effort_minutes": 5,
      "fun": 9,
      "impact": 2,
      "novelty": 3,
      "reliability": 4
    },
    "firstStep")");
    text.replace("\"vu\"", R"("urgency": {
      "level": "now",
      "who": "all"
    },
    "vu")");
    fill(file, text + '\n');
    auto store = open();
    ASSERT_EQ(store->count(), 1);
    const QUuid id = store->topics()[0]->id;
    store->save();
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(contentsOf(file), text + '\n');
    Topic judged = *store->topic(id);
    judged.unknown.clear();
    store->completeCaptured(judged);
    store->keep(id);
    EXPECT_TRUE(store->flush());
    EXPECT_TRUE(contentsOf(file).contains("2.50, 1e3, \"\\u00e9\"]\n    },"));
    EXPECT_TRUE(contentsOf(file).contains("12345678901234567890"));
}

// Each file beside the topics is read, and written anew for one more record.
TEST_F(StoreFaults, keeps_what_a_later_version_wrote_beside_the_topics) {
    auto store = open();
    const auto ids = store->add({sampleTopic(QStringLiteral("a"), TopicStatus::Reserve),
                                 sampleTopic(QStringLiteral("b"), TopicStatus::Reserve)});
    const QByteArray id = ids[0].toByteArray(QUuid::WithoutBraces).toUpper();
    const auto compact = [&](const char *name) {
        return QJsonDocument::fromJson(contentsOf(dir.filePath(QString::fromUtf8(name))))
            .toJson(QJsonDocument::Compact);
    };

    const QByteArray find = R"({"at":"2026-11-01T08:00:00Z","by":"b","topic":")" + id + "\"}";
    fill(dir.filePath(QStringLiteral("found-again.json")), '[' + find + ']');
    RediscoveryLog finds(*store, clock);
    test::waitFor(finds.note(ids[1]));
    EXPECT_TRUE(compact("found-again.json").startsWith('[' + find + ','));

    const QByteArray note = R"({"at":"2026-11-01T08:00:00Z","bytesRead":1,"examples":0,)"
                            R"("model":"m","reflexes":[{"id":"r","since":2,"title":"R"}],)"
                            R"("relevance":7,"topic":")" +
                            id + "\"}";
    fill(dir.filePath(QStringLiteral("score-notes.json")), '[' + note + ']');
    ScoreProvenanceLog notes(*store, clock);
    ScoreProvenance other;
    other.topic = ids[1];
    other.at = clock.moment;
    test::waitFor(notes.add({other}));
    EXPECT_TRUE(compact("score-notes.json").startsWith('[' + note + ','));

    RunReport report;
    report.date = clock.moment;
    report.scopes = {ScopeReport{}};
    report.scopes[0].yield = Yield{};
    report.unjudged = report.notNewer = {DroppedLink{}};
    report.feeds = {FeedTrouble{}};
    report.steps = {StepReport{}};
    report.sites = {SiteReport{}};
    QByteArray runs = json::encode(QList<RunReport>{report});
    // A key of its own in every record, wherever one begins.
    int keys = 0;
    for (qsizetype at = runs.indexOf('{'); at >= 0; at = runs.indexOf('{', at + 1)) {
        runs.insert(at + 1, "\"ahead" + QByteArray::number(++keys) + "\":[1,\"x\"],");
    }
    EXPECT_EQ(keys, 10);
    fill(dir.filePath(QStringLiteral("runs.json")), runs);
    report.date = report.date.addDays(1);
    store->addRun(report);
    const QByteArray kept = compact("runs.json");
    for (int key = 1; key <= keys; ++key) {
        EXPECT_EQ(kept.count("\"ahead" + QByteArray::number(key) + "\":[1,\"x\"]"), 1) << key;
    }
    EXPECT_EQ(store->history().size(), 2);
}

TEST_F(StoreFaults, reports_that_the_system_does_not_let_be_read_are_not_replaced) {
    const QString runs = dir.filePath(QStringLiteral("runs.json"));
    fill(runs, "[]");
    ASSERT_TRUE(QFile::resize(runs, maxFileBytes + 1)); // more than it reads
    RunReport report;
    report.date = clock.moment;
    open()->addRun(report);
    EXPECT_EQ(QFileInfo(runs).size(), maxFileBytes + 1);
    EXPECT_EQ(names(), QStringList{QStringLiteral("runs.json")}) << "nothing set aside either";
}

TEST_F(StoreFaults, sweeps_what_dead_processes_left_and_nothing_else) {
    const QString id = QString(32, u'a');
    const QString dead = QStringLiteral("runs.json.vorle-999999999-") + id;
    const QString reused = QStringLiteral("topics.json.vorle-%1-").arg(::getpid()) + id;
    const QString alive = QStringLiteral("topics.json.vorle-4194000-") + id;
    const QStringList others{QStringLiteral("notes.vorle-12"),
                             QStringLiteral("a.vorle-1-") + u'z' + id,
                             QStringLiteral("topics.json.illisible-2026-11-02-103000")};
    for (const QString &name : QStringList{dead, reused, alive} + others) {
        fill(dir.filePath(name), "x");
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
    fill(dir.filePath(dead), "x");
    fill(dir.filePath(QStringLiteral("there/") + reused), "x");
    open();
    EXPECT_FALSE(names().contains(dead));
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("there/") + reused)));
}

TEST_F(StoreFaults, a_full_disk_leaves_the_old_file_whole) {
    auto store = open();
    store->add({sampleTopic(QStringLiteral("a"))});
    ASSERT_TRUE(store->flush());
    const QByteArray before = contentsOf(file);
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
        // On a busy machine, longer: a save has to end now and then.
        const int patience = moved == 0 ? round + 1 : 1;
        ::usleep(static_cast<useconds_t>(random.bounded(3'000, 60'000) * patience));
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
