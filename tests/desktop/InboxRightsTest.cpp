// What the system does not allow with the drops and their folder.

#include "tests/desktop/ShareInboxFixture.h"
#include "tests/support/Settle.h"

#include <sys/stat.h>
#include <unistd.h>

namespace vorle {
namespace {

using test::dropOf;

class InboxRightsTest : public test::ShareInboxTest {
protected:
    /// Lets the rights of files count, also where the tests run as root.
    template <class Work>
    void asSomebody(Work work) {
        const uid_t own = ::geteuid();
        constexpr uid_t nobody = 65534;
        if (own == 0) {
            for (const QByteArray name : {"", "Inbox"}) {
                ASSERT_EQ(::chown(QFile::encodeName(path(name)).constData(), nobody, gid_t(-1)), 0);
            }
            ASSERT_EQ(::seteuid(nobody), 0);
        }
        try {
            work();
            close();
        } catch (const std::exception &error) {
            ADD_FAILURE() << error.what();
        }
        ASSERT_EQ(::seteuid(own), 0);
    }
    void setMode(const QString &file, mode_t mode) const {
        ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), mode), 0);
    }
};

TEST_F(InboxRightsTest, what_the_system_does_not_let_go_is_never_handed_over_again) {
    asSomebody([&] {
        test::writeFile(drop("a.json"), dropOf("a"));
        QFile large(drop("large.json"));
        ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(50'000'000));
        large.close();
        meanwhile = [&] { setMode(path("Inbox"), 0500); };
        open();
        test::spinUntil([&] { return test::readFile(path("drops.json")).count("goesAside") == 2; });
        signal.told();
        test::settle();
        EXPECT_EQ(entries("Inbox").size(), 2);
        EXPECT_EQ(heavy, 0);
        close();
        // Another start, which may.
        open();
        test::spinUntil([&] { return entries("Inbox").isEmpty(); });
        test::spinUntil([&] { return test::readFile(path("drops.json")).trimmed() == "[]"; });
        test::spinUntil([&] {
            return heavy == 1;
        }); // told as what it is, though nothing of it was read this time
        EXPECT_EQ(aside, 0);
        // The name is another drop's by now.
        test::writeFile(drop("a.json"), dropOf("b"));
        signal.told();
        test::spinUntil([&] { return seen.size() == 2 && entries("Inbox").isEmpty(); });
    });
    EXPECT_EQ(addresses(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(InboxRightsTest, what_cannot_be_read_now_waits_and_is_told) {
    asSomebody([&] {
        test::writeFile(drop("a.json"), dropOf("a"));
        setMode(drop("a.json"), 0);
        test::writeFile(drop("b.json"), dropOf("b"));
        open();
        test::spinUntil([&] { return !unread.isEmpty(); });
        EXPECT_EQ(addresses(), QStringList(QStringLiteral("b")));
        EXPECT_EQ(entries("Inbox"), QStringList(QStringLiteral("a.json")));
        setMode(drop("a.json"), 0600);
        test::spinUntil([&] { return seen.size() == 2 && entries("Inbox").isEmpty(); });
        EXPECT_EQ(unread, QStringList(QStringLiteral("a.json"))) << "once";
        // The folder itself: made again where it went, told where it stays shut.
        ASSERT_TRUE(QDir(path("Inbox")).removeRecursively());
        test::writeFile(path("Inbox"), "no folder");
        signal.told();
        test::spinUntil([&] { return bool(refused); });
        EXPECT_TRUE(QFile::remove(path("Inbox")));
        InboxFolder(path("Inbox")).drop({.url = QStringLiteral("https://example.org/c")});
        test::spinUntil([&] { return seen.size() == 3 && entries("Inbox").isEmpty(); });
    });
    EXPECT_EQ(aside, 0);
}

TEST_F(InboxRightsTest, nothing_inside_is_reached_by_a_link_and_no_other_users_folder_is_read) {
    test::writeFile(path("own/x.json"), dropOf("stolen"));
    ASSERT_TRUE(QFile::link(path("own"), drop(".parti")));
    ASSERT_TRUE(QFile::link(path("own"), drop("illisibles")));
    test::writeFile(drop("bad.json"), "{");
    test::writeFile(drop("good.json"), dropOf("good"));
    // The folder may stand elsewhere.
    ASSERT_TRUE(QFile::rename(path("Inbox"), path("elsewhere")));
    ASSERT_TRUE(QFile::link(path("elsewhere"), path("Inbox")));
    open();
    test::spinUntil([&] { return QFile::exists(path("drops.json")); });
    EXPECT_EQ(addresses(), QStringList(QStringLiteral("good")));
    EXPECT_EQ(entries("Inbox"), QStringList(QStringLiteral("bad.json")));
    EXPECT_EQ(entries("own"), QStringList(QStringLiteral("x.json")));
    close();
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(QFile::encodeName(path("elsewhere")).constData(), 65534, gid_t(-1)), 0);
        test::writeFile(drop("planted.json"), dropOf("planted"));
        open();
        test::spinUntil([&] { return bool(refused); });
        EXPECT_EQ(seen.size(), 1);
    }
}

} // namespace
} // namespace vorle
