// Archives of strangers: whose they are, and what of them reaches the disk.

#include "update/ReleaseArchive.h"

#include "tests/update/ReleaseMaker.h"
#include "update/UpdateError.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <system_error>

namespace vorle {
namespace {

using test::ArchiveEntry;
using test::ReleaseMaker;

class ReleaseArchiveTest : public testing::Test {
protected:
    QString path(const char *name) const { return folder.filePath(QString::fromUtf8(name)); }
    void unpack(const QList<ArchiveEntry> &entries, ArchiveLimits limits = {}) {
        QDir(path("out")).removeRecursively();
        test::writeFile(path("a.tar.gz"), ReleaseMaker::packed(entries));
        unpackRelease(path("a.tar.gz"), path("out"), {}, limits);
    }
    QStringList all() const {
        QStringList names;
        QDirIterator found(folder.path(),
                           QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories);
        while (found.hasNext()) {
            names += QDir(folder.path()).relativeFilePath(found.next());
        }
        names.sort();
        return names;
    }

    QTemporaryDir folder;
};

TEST_F(ReleaseArchiveTest, a_signature_is_of_its_key_and_of_every_byte) {
    const ReleaseMaker maker;
    const QByteArray bytes(100'000, 'v');
    const QByteArray signature = maker.sign(bytes);
    test::writeFile(path("a"), bytes);
    EXPECT_TRUE(isSignedBy(maker.publicKey(), signature, path("a")));
    EXPECT_FALSE(isSignedBy(ReleaseMaker().publicKey(), signature, path("a")));
    EXPECT_FALSE(isSignedBy({}, signature, path("a")));
    EXPECT_FALSE(isSignedBy(maker.publicKey(), signature.chopped(1), path("a")));
    EXPECT_FALSE(isSignedBy(maker.publicKey(), signature, path("none")));
    QByteArray other = bytes;
    other[50'000] = 'w';
    test::writeFile(path("a"), other);
    EXPECT_FALSE(isSignedBy(maker.publicKey(), signature, path("a")));
    test::writeFile(path("a"), bytes.chopped(1));
    EXPECT_FALSE(isSignedBy(maker.publicKey(), signature, path("a")));
}

TEST_F(ReleaseArchiveTest, unpacks_files_and_folders_and_the_right_to_run) {
    unpack({{"./bin", {}, false, '5'},
            {"./bin/vorle", "program", true},
            {"share/a/b.txt", QByteArray(300'000, 'x')},
            {"version", "1.5.0\n"}});
    EXPECT_EQ(test::readFile(path("out/share/a/b.txt")).size(), 300'000);
    EXPECT_TRUE(QFileInfo(path("out/bin/vorle")).isExecutable());
    EXPECT_FALSE(QFileInfo(path("out/version")).isExecutable());
}

TEST_F(ReleaseArchiveTest, nothing_leaves_its_folder_and_nothing_is_made_but_files) {
    test::writeFile(path("mine"), "as it was");
    const QByteArray outside = QFile::encodeName(path("mine"));
    const QList<QList<ArchiveEntry>> hostile{
        {{"../mine", "other"}},
        {{"a/../../mine", "other"}},
        {{outside, "other"}},
        {{"link", {}, false, '2', outside}, {"link", "other"}},
        {{"link", {}, false, '2', "../"}, {"link/mine", "other"}},
        {{"link", {}, false, '1', outside}},
        {{"null", {}, false, '3'}},
        {{"a", "one"}, {"a", "two"}},
        {{"a", "one"}, {"a/b", "two"}},
        {{"a\nb", "one"}},
        {{".", "a file"}},
    };
    for (const auto &entries : hostile) {
        SCOPED_TRACE(entries.first().path.toStdString());
        bool isRefused = false;
        try {
            unpack(entries);
        } catch (const UpdateError &) {
            isRefused = true;
        } catch (const std::system_error &) {
            isRefused = true;
        }
        EXPECT_TRUE(isRefused);
        EXPECT_EQ(test::readFile(path("mine")), "as it was");
        QDir(path("out")).removeRecursively();
        EXPECT_EQ(all(), (QStringList{QStringLiteral("a.tar.gz"), QStringLiteral("mine")}));
    }
}

TEST_F(ReleaseArchiveTest, size_and_number_are_bounded_and_a_cut_archive_is_none) {
    const QList<ArchiveEntry> large{{"a", QByteArray(200'000, 'x')}, {"b", "b"}};
    EXPECT_NO_THROW(unpack(large, {.bytes = 200'001}));
    EXPECT_THROW(unpack(large, {.bytes = 200'000}), UpdateError);
    EXPECT_THROW(unpack(large, {.entries = 1}), UpdateError);
    const QByteArray whole = ReleaseMaker::packed(large);
    for (const QByteArray &bytes : {whole.first(whole.size() / 2), QByteArray("text")}) {
        test::writeFile(path("a.tar.gz"), bytes);
        QDir(path("out")).removeRecursively();
        EXPECT_THROW(unpackRelease(path("a.tar.gz"), path("out")), UpdateError);
    }
    test::writeFile(path("a.tar.gz"), whole);
    QDir(path("out")).removeRecursively();
    test::withFileSizeLimit(100'000, [&] { // a disk without room
        EXPECT_THROW(unpackRelease(path("a.tar.gz"), path("out")), std::system_error);
    });
}

} // namespace
} // namespace vorle
