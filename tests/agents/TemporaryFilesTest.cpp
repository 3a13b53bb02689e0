#include "agents/TemporaryFiles.h"
#include "tests/support/ScriptedAgent.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>
#include <system_error>

#include <sys/stat.h>

namespace vorle {
namespace {

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

TEST(TemporaryFiles,
     a_file_is_the_owners_alone_holds_what_was_written_last_and_goes_with_its_object) {
    const test::ScriptedAgent folder; // a fresh temporary directory
    {
        const TemporaryFile file(u"vorle-schema-", u".json");
        EXPECT_TRUE(QFileInfo(file.path()).fileName().startsWith(QStringLiteral("vorle-schema-")));
        EXPECT_EQ(QFile::permissions(file.path()) &
                      ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
                  ownerOnly);
        file.write("longer");
        file.write("é");
        EXPECT_EQ(test::readFile(file.path()), "é");
        EXPECT_EQ(folder.leftovers().size(), 1);
    }
    EXPECT_TRUE(folder.leftovers().isEmpty());
    QDir(folder.temporary()).removeRecursively();
    EXPECT_THROW(TemporaryFile(u"vorle-run-", u".out"), std::system_error);
}

/// Where nobody else can write along, as in a user's folder, and where everybody can.
class PrivateTemporaryDirectory : public testing::Test {
protected:
    void SetUp() override {
        // A build that lies below a shared folder is no such place.
        const QString build = QCoreApplication::applicationDirPath();
        const QString home = isShared(build) ? QDir::homePath() : build;
        if (isShared(home)) {
            GTEST_SKIP() << "everybody can write above both the build and the home folder";
        }
        place.emplace(home + QStringLiteral("/vorle-test-XXXXXX"));
        shared = folder("shared", 01777);
        runtime = folder("runtime", 0700);
        cache = place->filePath(QStringLiteral("cache"));
        variables.set("TMPDIR", shared);
        variables.set("XDG_RUNTIME_DIR", runtime);
        variables.set("XDG_CACHE_HOME", cache);
    }

    static bool isShared(QString folder) {
        for (struct stat status = {}; folder != u"/"; folder = QFileInfo(folder).path()) {
            if (::stat(QFile::encodeName(folder).constData(), &status) != 0 ||
                (status.st_mode & S_IWOTH) != 0) {
                return true;
            }
        }
        return false;
    }
    static void allow(const QString &path, mode_t mode) {
        EXPECT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0);
    }
    QString folder(const char *name, mode_t mode) const {
        const QString path = place->filePath(QString::fromLatin1(name));
        QDir().mkpath(path);
        allow(path, mode);
        return path;
    }
    /// Where it is made when the system names that folder for temporary files.
    QString preparedFrom(const QString &named) {
        variables.set("TMPDIR", named);
        preparePrivateTemporaryDirectory();
        return QDir::tempPath();
    }

    std::optional<QTemporaryDir> place;
    QString shared;
    QString runtime;
    QString cache;
    test::Variables variables;
};

TEST_F(PrivateTemporaryDirectory, leaves_one_that_others_can_write_to) {
    const QString ofRuntime = runtime + QStringLiteral("/vorle");
    const QString ofCache = cache + QStringLiteral("/vorle/tmp");
    EXPECT_EQ(preparedFrom(shared), ofRuntime);
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(QDir::tempPath()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700U);

    allow(runtime, 0777);
    EXPECT_EQ(preparedFrom(shared), ofCache) << "a runtime directory that is everybody's is none";

    variables.set("XDG_RUNTIME_DIR", folder("shared/runtime", 0700));
    EXPECT_EQ(preparedFrom(shared), ofCache) << "so is one that lies below such a folder";
    variables.set("XDG_RUNTIME_DIR", runtime);
    allow(runtime, 0700);

    EXPECT_EQ(preparedFrom(folder("group", 0770)), ofRuntime)
        << "nor is one that a group can write to a place for temporary files";
}

TEST_F(PrivateTemporaryDirectory, never_trusts_a_planted_one_and_tells_where_there_is_none) {
    QFile::link(shared, runtime + QStringLiteral("/vorle"));
    EXPECT_EQ(preparedFrom(shared), cache + QStringLiteral("/vorle/tmp"));

    const QString file = place->filePath(QStringLiteral("file"));
    test::writeFile(file, {});
    variables.set("XDG_CACHE_HOME", file);
    variables.set("XDG_DATA_HOME", file);
    EXPECT_THROW(preparedFrom(shared), std::system_error);
    EXPECT_EQ(QDir::tempPath(), shared);
    variables.set("XDG_DATA_HOME", place->filePath(QStringLiteral("data")));
    EXPECT_EQ(preparedFrom(shared), place->filePath(QStringLiteral("data/vorle/tmp")));
}

TEST(TemporaryFiles, sweeps_what_nobody_uses_any_more_and_nothing_else) {
    const test::ScriptedAgent folder;
    const auto place = [&](const char *name, int hoursAgo) {
        const QString path = folder.temporary() + u'/' + QString::fromLatin1(name);
        test::writeFile(path, "x");
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.setFileTime(QDateTime::currentDateTime().addSecs(-3600 * hoursAgo),
                         QFileDevice::FileModificationTime);
    };
    const auto leave = [&](const char *name) {
        QDir().mkpath(folder.temporary() + u'/' + QString::fromLatin1(name));
        place((QByteArray(name) + "/inside").constData(), 0);
    };
    // What dead processes left, seconds ago.
    place("vorle-run-0A000000-0000-4000-8000-000000000001.out", 0);
    place("vorle-answer-0A000000-0000-4000-8000-000000000001.json", 0);
    place("vorle-score-0A000000-0000-4000-8000-000000000001.png", 0);
    leave("vorle-demo-AbCdEf");
    ASSERT_EQ(::mkfifo(QFile::encodeName(folder.temporary() +
                                         QStringLiteral("/vorle-answer-0A000000-0000-4000-8000-"
                                                        "000000000002.json"))
                           .constData(),
                       0600),
              0);
    // What was left to a terminal: it may not have come to it yet.
    place("vorle-launch-0A000000-0000-4000-8000-000000000001.txt", 25);
    place("vorle-launch-0A000000-0000-4000-8000-000000000002.command", 23);
    // Or to a mail program, which reads it when the message is sent.
    place("vorle-feedback-0A000000-0000-4000-8000-000000000001.png", 25);
    place("vorle-feedback-0A000000-0000-4000-8000-000000000002.jpg", 23);
    // What is another's, or in use, however old.
    place("other-OLD", 25);
    place("vorle-mes-notes.txt", 25);
    QFile::link(QStringLiteral("/etc/hostname"),
                folder.temporary() + QStringLiteral("/vorle-link"));
    const TemporaryFile used(u"vorle-run-", u".err");
    place(QFileInfo(used.path()).fileName().toLatin1().constData(), 48);
    leave("vorle-demo-ZyXwVu");
    std::optional<Descriptor> use(inUse(folder.temporary() + QStringLiteral("/vorle-demo-ZyXwVu")));
    EXPECT_TRUE(use->isOpen());

    QStringList left{QStringLiteral("other-OLD"),
                     QStringLiteral("vorle-demo-ZyXwVu"),
                     QStringLiteral("vorle-feedback-0A000000-0000-4000-8000-000000000002.jpg"),
                     QStringLiteral("vorle-launch-0A000000-0000-4000-8000-000000000002.command"),
                     QStringLiteral("vorle-link"),
                     QStringLiteral("vorle-mes-notes.txt"),
                     QFileInfo(used.path()).fileName()};
    left.sort();
    removeStaleFiles();
    QStringList found = folder.leftovers();
    found.sort();
    EXPECT_EQ(found, left);

    use.reset();
    removeStaleFiles();
    EXPECT_FALSE(QFile::exists(folder.temporary() + QStringLiteral("/vorle-demo-ZyXwVu")));
}

} // namespace
} // namespace vorle
