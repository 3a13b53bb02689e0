#include "app/transfer/TopicArchive.h"
#include "app/transfer/TopicImport.h"
#include "base/Cancellation.h"
#include "tests/core/Samples.h"
#include "tests/support/Files.h"
#include "tests/support/Text.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace vorle {
namespace {

using test::readFile;
using test::sampleTopic;
using test::text;
using test::writeFile;

class TransferTest : public testing::Test {
protected:
    std::unique_ptr<TopicStore> open(const QString &name) {
        return std::make_unique<TopicStore>(dir.filePath(name), Resources(dir.path()), clock);
    }
    static QList<Topic> topicsOf(const TopicStore &store) {
        QList<Topic> topics;
        for (const TopicPtr &topic : store.topics()) {
            topics += *topic;
        }
        return topics;
    }
    WrittenFiles exported(const QList<Topic> &topics) {
        return exportTopics(topics, folder, live, {}, clock.now());
    }
    QStringList notes() const {
        return QDir(folder + QStringLiteral("/notes")).entryList({QStringLiteral("*.md")});
    }
    QString note(const QString &name) const { return folder + QStringLiteral("/notes/") + name; }

    QTemporaryDir dir;
    QString live = dir.filePath(QStringLiteral("sujets.json"));
    QString folder = dir.filePath(QStringLiteral("dehors/export"));
    test::FixedClock clock;
};

TEST_F(TransferTest, comes_back_to_the_last_byte) {
    Topic a = sampleTopic(text("été « a »"), TopicStatus::Program);
    a.unknown.insert("later", "{\"x\": [1, 2.50]}");
    a.note = text("ligne\u2028et emoji 👩‍💻");
    a.brief = Brief{{{QStringLiteral("t"), QStringLiteral("b")}}, {}, {}, {}, {}};
    Topic b = sampleTopic(QStringLiteral("b"), TopicStatus::Dismissed);
    b.sources = a.sources; // two topics of one page: both stood
    Topic captured = sampleTopic(QStringLiteral("c"), TopicStatus::Pending);
    captured.origin = Origin::Capture;
    captured.capturedURL = QStringLiteral("https://example.org/c");
    auto store = open(QStringLiteral("sujets.json"));
    store->add({a, b, captured});
    ASSERT_TRUE(store->flush());

    EXPECT_EQ(exported(topicsOf(*store)).written, 4);
    EXPECT_EQ(readFile(folder + QStringLiteral("/topics.json")), readFile(live));
    auto other = open(QStringLiteral("autre.json"));
    EXPECT_EQ(importTopicsInto(*other, readTopicArchive(folder)), (ImportOutcome{.added = 3}));
    ASSERT_TRUE(other->flush());
    EXPECT_EQ(readFile(dir.filePath(QStringLiteral("autre.json"))), readFile(live));
}

TEST_F(TransferTest, doubles_no_topic_and_changes_none_that_is_there) {
    auto store = open(QStringLiteral("sujets.json"));
    const Topic mine = sampleTopic(QStringLiteral("mien"), TopicStatus::Done);
    Topic linked = sampleTopic(QStringLiteral("lien"));
    linked.sources = {{QStringLiteral("p"), QStringLiteral("https://Example.org/page/?utm_x=1")}};
    Topic site = sampleTopic(QStringLiteral("site"));
    site.sources = {{QStringLiteral("p"), QStringLiteral("https://example.org/")}};
    store->add({mine, linked, site});
    const QList<Topic> before = topicsOf(*store);

    Topic same = mine;
    same.title = QStringLiteral("autre titre");
    Topic sameLink = sampleTopic(QStringLiteral("x"));
    sameLink.sources = {{QStringLiteral("q"), QStringLiteral("https://example.org/page#bas")}};
    Topic sameCapture = sampleTopic(QStringLiteral("y"));
    sameCapture.capturedURL = QStringLiteral("https://example.org/page");
    Topic sameSite = sampleTopic(QStringLiteral("z")); // its front page says nothing of its topic
    sameSite.sources = site.sources;
    Topic twice = sampleTopic(QStringLiteral("deux"));
    Topic nameless = sampleTopic(QStringLiteral("sans"));
    nameless.id = QUuid();
    nameless.sources.clear();
    Topic pending = sampleTopic(QStringLiteral("attend"), TopicStatus::Pending);
    const QList<Topic> given{same,  sameLink, sameCapture, sameSite,
                             twice, twice,    nameless,    pending};
    EXPECT_EQ(importTopicsInto(*store, given),
              (ImportOutcome{.added = 4, .sameTopic = 1, .sameLink = 2, .repeated = 1}));
    EXPECT_EQ(topicsOf(*store).first(3), before);
    EXPECT_EQ(store->topic(pending.id)->status, TopicStatus::Inbox);
    EXPECT_EQ(importTopicsInto(*store, given).added, 0);
}

TEST_F(TransferTest, refuses_what_is_no_list_of_topics_and_says_so) {
    const QString file = dir.filePath(QStringLiteral("lu.json"));
    const Topic one = sampleTopic(QStringLiteral("a"));
    const QByteArray whole = json::encode(QList<Topic>{one});
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("{}"), QByteArray("[1]"), whole.chopped(1), whole + "[]",
          QByteArray("[{\"id\":\"x\"}]"), QByteArray(100'000, '['), QByteArray("\xff\xfe[]")}) {
        writeFile(file, bytes);
        EXPECT_THROW(readTopicArchive(file), TransferRefused)
            << bytes.first(std::min<qsizetype>(bytes.size(), 40)).toStdString();
    }
    EXPECT_THROW(readTopicArchive(dir.filePath(QStringLiteral("rien"))), TransferRefused);
    EXPECT_THROW(readTopicArchive(dir.path()), TransferRefused); // a folder without an archive
    writeFile(file, {});
    ASSERT_TRUE(QFile::resize(file, maxArchiveBytes + 1));
    EXPECT_THROW(readTopicArchive(file), TransferRefused);
    const QString pipe = dir.filePath(QStringLiteral("tube"));
    ASSERT_EQ(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    EXPECT_THROW(readTopicArchive(pipe), std::system_error);

    Topic wild = one;
    wild.score = 99;
    wild.minutes = -5;
    wild.correction = Correction{-3, {}, {}, one.foundAt};
    writeFile(file, json::encode(QList<Topic>{wild}));
    const Topic read = readTopicArchive(file).first();
    EXPECT_EQ(read.score, 10);
    EXPECT_EQ(read.minutes, 0);
    EXPECT_EQ(read.correction->score, 0);
}

TEST_F(TransferTest, writes_over_nothing_that_is_not_its_own) {
    auto store = open(QStringLiteral("topics.json"));
    store->add({sampleTopic(QStringLiteral("a"))});
    ASSERT_TRUE(store->flush());
    live = dir.filePath(QStringLiteral("topics.json"));
    const QByteArray bytes = readFile(live);
    folder = dir.path();
    EXPECT_THROW(exported({}), TransferRefused);
    const QString link = dir.filePath(QStringLiteral("lien"));
    QFile::link(dir.path(), link);
    folder = link; // by another name
    EXPECT_THROW(exported({}), TransferRefused);
    folder = dir.filePath(QStringLiteral("autre"));
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile::link(live, folder + QStringLiteral("/topics.json"));
    EXPECT_THROW(exported({}), TransferRefused);
    EXPECT_EQ(readFile(live), bytes);

    folder = dir.filePath(QStringLiteral("troisieme"));
    ASSERT_TRUE(QDir().mkpath(folder));
    writeFile(folder + QStringLiteral("/topics.json"), "{\"theirs\": 1}");
    EXPECT_THROW(exported({}), TransferRefused);
    EXPECT_EQ(readFile(folder + QStringLiteral("/topics.json")), "{\"theirs\": 1}");
}

TEST_F(TransferTest, an_earlier_export_that_has_more_is_kept) {
    const Topic a = sampleTopic(QStringLiteral("a"));
    const Topic b = sampleTopic(QStringLiteral("b"));
    EXPECT_EQ(exported({a, b}).aside, QString());
    const WrittenFiles files = exported({b});
    EXPECT_EQ(readTopicArchive(files.aside), (QList<Topic>{a, b}));
    EXPECT_EQ(readTopicArchive(folder), QList<Topic>{b});
    EXPECT_EQ(exported({b}).aside, QString());
    // The folder of topics that were never saved yet is theirs all the same.
    folder = dir.path();
    live = dir.filePath(QStringLiteral("topics.json"));
    EXPECT_THROW(exported({b}), TransferRefused);
}

TEST_F(TransferTest, changes_only_the_notes_that_changed) {
    Topic a = sampleTopic(QStringLiteral("alpha"));
    Topic b = sampleTopic(QStringLiteral("beta"));
    Topic c = sampleTopic(QStringLiteral("gamma"));
    EXPECT_EQ(exported({a, b, c}).written, 4);
    const QStringList names = notes();
    ASSERT_EQ(names.size(), 3);
    EXPECT_TRUE(names[0].startsWith(u"alpha-")) << names[0].toStdString();

    // The second changed, title and all; the third was edited by its owner, and changed too.
    const QByteArray edited = readFile(note(names[2])) + "\nma ligne\n";
    writeFile(note(names[2]), edited);
    const QDateTime old = QDateTime(QDate(2020, 1, 1), QTime(0, 0));
    for (const QString &name : names) {
        QFile file(note(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite) &&
                    file.setFileTime(old, QFileDevice::FileModificationTime));
    }
    b.title = QStringLiteral("autre nom");
    c.title = QStringLiteral("encore un");
    WrittenFiles files = exported({a, b, c});
    EXPECT_EQ(files.written, 2); // and the archive
    EXPECT_EQ(files.unchanged, 1);
    EXPECT_EQ(files.left, QStringList{names[2]});
    EXPECT_EQ(notes(), names); // links to them hold
    EXPECT_EQ(QFileInfo(note(names[0])).lastModified(), old);
    EXPECT_TRUE(readFile(note(names[1])).contains("autre nom"));
    EXPECT_EQ(readFile(note(names[2])), edited);
    EXPECT_EQ(exported({a, b, c}).left, QStringList{names[2]}); // and it stays so

    // Without what is known of them, none is written over.
    QFile::remove(folder + QStringLiteral("/notes/.vorle-notes.json"));
    a.note = QStringLiteral("neuf");
    const QByteArray before = readFile(note(names[0]));
    files = exported({a, b, c});
    EXPECT_EQ(files.left, QStringList{names[0]}); // the others' titles give other names
    EXPECT_EQ(readFile(note(names[0])), before);
    EXPECT_EQ(readFile(note(names[2])), edited);

    // A hostile index leads nowhere else.
    const QString outside = dir.filePath(QStringLiteral("dehors/x.md"));
    writeFile(outside, "theirs");
    writeFile(folder + QStringLiteral("/notes/.vorle-notes.json"),
              "{\"" + a.id.toString(QUuid::WithoutBraces).toUpper().toUtf8() +
                  "\": {\"file\": \"../../x.md\", \"digest\": \"0\"}}");
    exported({a});
    EXPECT_EQ(readFile(outside), "theirs");
}

TEST_F(TransferTest, gives_topics_alike_a_note_each_and_stops_when_told) {
    QList<Topic> topics;
    for (const char *end : {"000000000001", "000000000002", "000000000003"}) {
        topics += sampleTopic(QStringLiteral("../même titre"));
        topics.last().id =
            QUuid(QStringLiteral("1f2e3d4c-0000-4000-8000-") + QString::fromLatin1(end));
    }
    EXPECT_EQ(exported(topics).written, 4);
    EXPECT_EQ(notes().size(), 3);
    EXPECT_EQ(exported(topics).unchanged, 4);
    topics[0].title = topics[1].title = QStringLiteral("neuf");
    int asked = 0;
    EXPECT_THROW(writeTopicNotes(topics, folder + QStringLiteral("/notes"), clock.now(),
                                 [&asked] { return ++asked > 1; }),
                 Cancelled);
    EXPECT_EQ(exported(topics).left, QStringList()); // what was written by then is known as ours
    // A folder where a note should be: told, and the rest is not lost.
    const QString name = notes().first();
    QFile::remove(note(name));
    ASSERT_TRUE(QDir().mkpath(note(name)));
    EXPECT_THROW(exported(topics), std::system_error);
}

} // namespace
} // namespace vorle
