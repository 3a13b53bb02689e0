#include "tests/desktop/ShareInboxFixture.h"

#include "tests/support/Files.h"
#include "tests/support/HostileNames.h"
#include "tests/support/Settle.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

#include <system_error>

namespace vorle {
namespace {

using std::chrono::milliseconds;

using test::dropOf;
using test::ShareInboxTest;

TEST_F(ShareInboxTest, a_drop_is_one_record_whose_keys_stand_in_their_order) {
    const ShareInbox::Item item{.title = QStringLiteral("t"),
                                .url = QStringLiteral("https://a.fr/"),
                                .note = QStringLiteral("n"),
                                .project = QStringLiteral("p"),
                                .pageText = QStringLiteral("x"),
                                .sharedAt = parseIso8601("2026-11-22T08:00:00Z")};
    InboxFolder(path("Inbox")).drop(item);
    ASSERT_EQ(entries("Inbox").size(), 1);
    EXPECT_EQ(test::readFile(path("Inbox/") + entries("Inbox").first()),
              R"({"title":"t","url":"https://a.fr/","note":"n","project":"p","pageText":"x",)"
              R"("sharedAt":"2026-11-22T08:00:00Z"})");
    open();
    test::spinUntil([&] { return seen.size() == 1; });
    EXPECT_EQ(seen.first(), item);
}

TEST_F(ShareInboxTest, what_lies_there_and_what_comes_is_taken_once_and_goes) {
    test::writeFile(drop("one.json"), dropOf("one"));
    open();
    test::spinUntil([&] { return seen.size() == 1; });
    // The folder tells by itself, whoever moves a file in.
    test::writeFile(path("two"), dropOf("two"));
    QFile::rename(path("two"), drop("two.json"));
    test::spinUntil([&] { return seen.size() == 2; });
    signal.told();
    test::spinUntil([&] { return entries("Inbox").isEmpty(); });
    close();
    open();
    test::settle();
    EXPECT_EQ(addresses(), QStringList({QStringLiteral("one"), QStringLiteral("two")}));
    EXPECT_EQ(aside, 0);
}

TEST_F(ShareInboxTest, what_holds_no_link_is_kept_aside_and_never_read_again) {
    const QByteArray broken[] = {"",
                                 "{",
                                 "[]",
                                 "null",
                                 R"({"title":"sans adresse"})",
                                 R"({"url":7})",
                                 R"({"url":"https://a.fr","sharedAt":"hier"})",
                                 R"({"url":"file:///etc/passwd"})",
                                 "\xFF\xFE\x00",
                                 QByteArray(R"({"url":")") + QByteArray(100'000, '[')};
    int number = 0;
    for (const QByteArray &bytes : broken) {
        test::writeFile(drop("broken-" + QByteArray::number(++number) + ".json"), bytes);
    }
    // Fifty megabytes, of which none is read: that is another thing, and said as such.
    QFile large(drop("large.json"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(50'000'000));
    large.close();
    test::writeFile(path("Inbox/illisibles/broken-1.json"), "an earlier one");
    // What is no file of a drop stays as it is.
    test::writeFile(drop(".hidden.json"), dropOf("hidden"));
    test::writeFile(drop("other.txt"), dropOf("other"));
    test::writeFile(path("outside"), dropOf("outside"));
    QFile::link(path("outside"), drop("link.json"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(drop("pipe.json")).constData(), 0600), 0);
    QDir().mkdir(drop("folder.json"));
    test::writeFile(drop("good.json"), dropOf("good"));
    open();
    test::spinUntil([&] { return aside == number && heavy == 1; });
    EXPECT_EQ(addresses().filter(QStringLiteral("good")).size(), 1);
    EXPECT_EQ(entries("Inbox/illisibles").size(), number + 2);
    EXPECT_EQ(test::readFile(path("Inbox/illisibles/broken-1.json")), "an earlier one");
    EXPECT_EQ(QFile(path("Inbox/illisibles/large.json")).size(), 50'000'000);
    EXPECT_EQ(entries("Inbox"),
              QStringList({QStringLiteral("link.json"), QStringLiteral("other.txt"),
                           QStringLiteral("pipe.json")}));
    const qsizetype before = seen.size();
    close();
    open();
    test::settle();
    EXPECT_EQ(seen.size(), before);
}

TEST_F(ShareInboxTest, a_drop_that_is_still_written_is_taken_when_it_is_whole) {
    const QByteArray whole = dropOf("whole");
    test::writeFile(drop("a.json"), whole.first(20));
    open(std::chrono::minutes(5)); // nobody would wait so long
    test::settle();
    test::writeFile(drop("b.json"), dropOf("b"));
    test::spinUntil([&] { return seen.size() == 1 && entries("Inbox").size() == 1; });
    EXPECT_EQ(entries("Inbox"), QStringList(QStringLiteral("a.json")));
    test::writeFile(drop("a.json"), whole);
    signal.told();
    test::spinUntil([&] { return seen.size() == 2; });
    EXPECT_EQ(aside, 0);
}

TEST_F(ShareInboxTest, what_takes_a_drops_name_meanwhile_is_another_drop) {
    test::writeFile(drop("a.json"), dropOf("first"));
    meanwhile = [&] {
        test::writeFile(path("other"), dropOf("second"));
        ASSERT_EQ(::rename(QFile::encodeName(path("other")).constData(),
                           QFile::encodeName(drop("a.json")).constData()),
                  0);
    };
    open();
    test::spinUntil([&] { return seen.size() == 2 && entries("Inbox").isEmpty(); });
    EXPECT_EQ(addresses(), QStringList({QStringLiteral("first"), QStringLiteral("second")}));
    // Killed between two steps of the taking away: what stood there is looked at once more.
    close();
    test::writeFile(path("Inbox/.parti/x.json"), dropOf("left"));
    open();
    test::spinUntil([&] {
        return seen.size() == 3 && entries("Inbox").isEmpty() && entries("Inbox/.parti").isEmpty();
    });
}

TEST_F(ShareInboxTest, what_could_not_be_saved_stays_and_is_handed_over_once) {
    refusals = 2;
    test::writeFile(drop("a.json"), dropOf("a"));
    open();
    test::spinUntil([&] { return refusals == 1; });
    EXPECT_EQ(entries("Inbox").size(), 1);
    test::writeFile(drop("b.json"), dropOf("b"));
    test::spinUntil([&] { return entries("Inbox").isEmpty(); });
    EXPECT_EQ(addresses(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(ShareInboxTest, no_listing_reads_more_than_it_may) {
    for (int i = 0; i < 9; ++i) {
        QFile file(drop(QByteArray::number(i) + ".json"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(InboxFolder::maxBytes));
    }
    DiskPulse pulse;
    const InboxFolder inboxFolder(path("Inbox"));
    const auto first = inboxFolder.read(500, {}, pulse);
    EXPECT_EQ(first.drops.size(), 8);
    EXPECT_TRUE(first.more);
    QHash<QByteArray, InboxFolder::State> known;
    for (const auto &each : first.drops) {
        EXPECT_EQ(each.content, InboxFolder::Content::NoLink);
        known.insert(each.name, each.state);
    }
    known.insert("gone.json", {});
    const auto second = inboxFolder.read(500, known, pulse);
    EXPECT_EQ(second.drops.size(), 1);
    EXPECT_FALSE(second.more);
    EXPECT_EQ(second.gone, QList<QByteArray>{"gone.json"});
}

TEST_F(ShareInboxTest, what_may_not_be_taken_in_stays) {
    held = true;
    test::writeFile(drop("a.json"), dropOf("a"));
    test::writeFile(drop("b.json"), "{");
    open();
    test::spinUntil([&] { return heldBack > 0; });
    test::settle();
    EXPECT_EQ(entries("Inbox").size(), 2);
    EXPECT_TRUE(seen.isEmpty());
    held = false;
    inbox->look();
    test::spinUntil([&] { return seen.size() == 1 && aside == 1; });
}

TEST_F(ShareInboxTest, thousands_come_in_batches_and_names_are_only_names) {
    qsizetype count = 0;
    QList<QByteArray> names{QByteArray("bad-\xFF\xFE"), QByteArray(250, 'n')};
    for (const QString &name : test::hostileNames()) {
        names += name.toUtf8();
    }
    for (int i = 0; i < 3'000; ++i) {
        names += "n" + QByteArray::number(i);
    }
    const QSet<QByteArray> each(names.begin(), names.end());
    for (const QByteArray &name : each) {
        if (name.contains('/') || name.startsWith('.') || name.size() > 250) {
            continue;
        }
        std::FILE *file = std::fopen(
            (QFile::encodeName(folder.path()) + "/Inbox/" + name + ".json").constData(), "w");
        ASSERT_NE(file, nullptr) << name.constData();
        std::fputs(dropOf(QByteArray::number(++count)).constData(), file);
        std::fclose(file);
    }
    EXPECT_GT(count, 3'180);
    open();
    test::spinUntil([&] { return seen.size() == count && entries("Inbox").isEmpty(); });
    const QStringList all = addresses();
    EXPECT_EQ(all.size(), QSet<QString>(all.begin(), all.end()).size());
    EXPECT_EQ(largest, ShareInbox::batch);
    EXPECT_EQ(aside, 0);
}

} // namespace
} // namespace vorle
