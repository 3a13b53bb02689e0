#include "agents/setup/Placement.h"
#include "tests/support/Files.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <system_error>

#include <sys/stat.h>

namespace vorle {
namespace {

using test::readFile;
using test::writeFile;

/// A program that comes from one folder and is to go to another: of the same file system, and of
/// two where the machine has them.
class PlacementTest : public testing::TestWithParam<const char *> {
protected:
    PlacementTest() { writeFile(from(), "the new program"); }

    QString from() const { return m_from.filePath(QStringLiteral("download")); }
    QString folder() const { return m_home.filePath(QStringLiteral("deep/bin")); }
    QString target() const { return folder() + QStringLiteral("/codex"); }
    QStringList lies() const {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    void place() const { placeExecutable(from(), folder(), QStringLiteral("codex")); }

    QTemporaryDir m_from{QString::fromUtf8(GetParam()) + QStringLiteral("/vorle-test-XXXXXX")};
    QTemporaryDir m_home;
};

TEST_P(PlacementTest, replaces_what_has_the_name_and_nothing_that_it_leads_to) {
    if (!m_from.isValid()) {
        GTEST_SKIP() << "there is no such folder here";
    }
    place();
    EXPECT_EQ(readFile(target()), "the new program");
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(target()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0755u);

    const QString elsewhere = m_home.filePath(QStringLiteral("elsewhere"));
    writeFile(elsewhere, "another's");
    QFile::remove(target());
    QFile::link(elsewhere, target());
    writeFile(folder() + QStringLiteral("/.vorle-install-OLD"), "half a copy");
    writeFile(from(), "the newer program");
    place();
    EXPECT_EQ(readFile(target()), "the newer program");
    EXPECT_FALSE(QFileInfo(target()).isSymLink());
    EXPECT_EQ(readFile(elsewhere), "another's");
    EXPECT_EQ(lies(), QStringList{QStringLiteral("codex")}) << "what a kill left is gone";
}

TEST_P(PlacementTest, leaves_what_is_there_where_it_fails) {
    if (!m_from.isValid()) {
        GTEST_SKIP() << "there is no such folder here";
    }
    place();
    const QString outside = m_home.filePath(QStringLiteral("outside"));
    writeFile(outside, "a file of the user's");
    QFile::remove(from());
    QFile::link(outside, from());
    EXPECT_THROW(place(), std::system_error) << "a link is no program";
    QFile::remove(from());
    ASSERT_EQ(::link(QFile::encodeName(outside).constData(),
                     QFile::encodeName(m_home.filePath(QStringLiteral("twice"))).constData()),
              0);
    EXPECT_THROW(placeExecutable(outside, folder(), QStringLiteral("codex")), std::system_error)
        << "it has another name";
    if (QString::fromUtf8(GetParam()) == u"/dev/shm") {
        writeFile(from(), QByteArray(100'000, 'x'));
        test::withFileSizeLimit(
            10'000, [this] { EXPECT_THROW(place(), std::system_error) << "the disk is full"; });
    }
    EXPECT_EQ(readFile(target()), "the new program");
    EXPECT_EQ(lies(), QStringList{QStringLiteral("codex")});
}

INSTANTIATE_TEST_SUITE_P(Places, PlacementTest, testing::Values("/tmp", "/dev/shm"),
                         [](const auto &one) {
                             return std::string(one.param) == "/tmp" ? "near" : "far";
                         });

} // namespace
} // namespace vorle
