#include "core/TopicStore.h"
#include "storage/JsonSettings.h"
#include "tests/storage/SettingsFixture.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <system_error>

/// What becomes of the settings' file: many writers, a full disk, a hostile place.
namespace vorle {
namespace {

using test::readFile;
using test::writeFile;

class SettingsFileTest : public test::SettingsFixture {};

/// Runs `work` in that many processes at once and waits for them.
void inProcesses(int count, const std::function<bool(int)> &work) {
    for (int process = 0; process < count; ++process) {
        if (::fork() == 0) {
            ::_exit(work(process) ? 0 : 1);
        }
    }
    for (int process = 0; process < count; ++process) {
        int status = 0;
        ::wait(&status);
        EXPECT_EQ(status, 0);
    }
}

TEST_F(SettingsFileTest, keeps_what_many_processes_write_to_one_file_at_once) {
    file = dir.filePath(QStringLiteral("keep.json"));
    writeFile(file, R"({"unknown":{"a":[1,2.5,true]},"interests":["gone"],
        "interestWeights":{"a":5,"b":"five"}})");
    // Each a setting of its own; then each an entry of its own in the same two settings.
    inProcesses(32, [&](int process) {
        const auto key = QStringLiteral("key%1").arg(process);
        JsonSettings settings(file, [](const JsonSettings::Outcome &) {});
        settings.change(key, {}, process);
        return !settings.flush().error;
    });
    for (int process = 0; process < 32; ++process) {
        EXPECT_EQ(onDisk().value(QStringLiteral("key%1").arg(process)), QJsonValue(process));
    }
    Preferences watching = open();
    inProcesses(32, [&](int process) {
        Preferences preferences = open();
        auto interests = preferences.settings().interests;
        interests.removeAll(QStringLiteral("gone"));
        interests += QString::number(process);
        preferences.change(&Settings::interests, interests);
        auto projects = preferences.settings().projects;
        projects[QString::number(process)] = QStringLiteral("/p");
        preferences.change(&Settings::projects, projects);
        auto weights = preferences.settings().interestWeights;
        weights[QString::number(process)] = 4;
        preferences.change(&Settings::interestWeights, weights);
        return preferences.flush();
    });
    QStringList told;
    QObject::connect(&watching, &Preferences::changed, [&](const QString &key) { told += key; });
    watching.reload();
    EXPECT_EQ(told, (QStringList{QStringLiteral("interests"), QStringLiteral("interestWeights"),
                                 QStringLiteral("projects")}));
    EXPECT_EQ(watching.settings().interests.size(), 32);
    EXPECT_EQ(watching.settings().projects.size(), 32);
    EXPECT_EQ(watching.settings().interestWeights.size(), 33);
    EXPECT_EQ(onDisk().value(u"interestWeights").toObject().value(u"b"),
              QJsonValue(QStringLiteral("five")))
        << "what could not be read stays";
    EXPECT_EQ(onDisk().value(u"unknown").toObject().value(u"a").toArray(),
              (QJsonArray{1, 2.5, true}));
}

TEST_F(SettingsFileTest, merges_lists_and_dictionaries_that_two_changed) {
    const char *cases[][4] = {
        // before, mine, theirs, both
        {R"([["a","b"]])", R"([["b","a"]])", R"([["a","b"]])", R"([["b","a"]])"},
        {R"([["a","b"]])", R"([["a","b","c"]])", R"([["b","d"]])", R"([["b","c","d"]])"},
        {R"([["a"]])", R"([[]])", R"([["a","b"]])", R"([["b"]])"},
        {R"([{"a":1}])", R"([{"a":2,"c":3}])", R"([{"a":1,"b":"?"}])",
         R"([{"a":2,"b":"?","c":3}])"},
        {R"([{"a":1,"b":1}])", R"([{"b":1}])", R"([{"a":1,"b":2}])", R"([{"b":2}])"},
        {R"([[{"address":"x"}]])", R"([[{"address":"x","feed":"f"}]])",
         R"([[{"address":"x","feed":null},{"address":"y"}]])",
         R"([[{"address":"x","feed":"f"},{"address":"y"}]])"},
        {"[1]", "[2]", "[3]", "[2]"},
        {R"(["a"])", "[null]", R"(["b"])", "[null]"},
    };
    for (const auto &[base, mine, theirs, both] : cases) {
        const auto value = [](const char *text) {
            return QJsonDocument::fromJson(text).array().at(0);
        };
        EXPECT_EQ(mergedSetting(value(base), value(mine), value(theirs)), value(both)) << mine;
    }
}

TEST_F(SettingsFileTest, sees_what_others_write_while_it_is_open) {
    Preferences open1 = open();
    open1.watch();
    QStringList told;
    QObject::connect(&open1, &Preferences::changed, [&](const QString &key) { told += key; });
    const auto until = [&](const char *key) {
        test::spinUntil([&] { return told.contains(QLatin1StringView(key)); });
        told.clear();
    };
    // By a save of ours, which makes the file; by an editor, in place; by another one, by renaming.
    Preferences other = open();
    other.change(&Settings::weeklyMinutes, 60);
    ASSERT_TRUE(other.flush());
    until("weeklyMinutes");
    writeFile(file, R"({"weeklyMinutes":60,"job":"luthière"})");
    until("job");
    writeFile(file + u'~', R"({"weeklyMinutes":60,"accent":"Lagune"})");
    ASSERT_EQ(::rename(qPrintable(file + u'~'), qPrintable(file)), 0);
    until("accent");
    other.change(&Settings::proposeTab, false);
    ASSERT_TRUE(other.flush());
    until("proposeTab");
    // What cannot be read now changes nothing, and is not the end of it.
    writeFile(file, R"({"weeklyMin)");
    open1.reload();
    EXPECT_EQ(open1.settings().weeklyMinutes, 60);
    open1.change(&Settings::notifyReminder, true);
    ASSERT_TRUE(open1.flush());
    EXPECT_TRUE(open1.setAside());
    EXPECT_EQ(onDisk().value(u"weeklyMinutes"), QJsonValue(60)) << "what is known is written again";
    writeFile(file, R"({"weeklyMinutes":30})");
    until("weeklyMinutes");
    EXPECT_EQ(open1.settings().weeklyMinutes, 30);
}

TEST_F(SettingsFileTest, sees_what_was_written_before_it_watched) {
    Preferences open1 = open();
    Preferences other = open();
    other.change(&Settings::weeklyMinutes, 60);
    ASSERT_TRUE(other.flush());
    open1.watch();
    EXPECT_EQ(open1.settings().weeklyMinutes, 60);
}

// A file of another form stands in for the database: like it, it is read again on demand alone.
TEST_F(SettingsFileTest, sees_what_others_put_into_the_user_defaults) {
    const auto database = [&] {
        return Preferences(std::make_unique<SettingsFile>(std::make_unique<QSettings>(
            dir.filePath(QStringLiteral("defaults.ini")), QSettings::IniFormat)));
    };
    Preferences watching = database();
    watching.watch();
    QStringList told;
    QObject::connect(&watching, &Preferences::changed, [&](const QString &key) { told += key; });
    Preferences other = database();
    other.change(&Settings::weeklyMinutes, 60);
    ASSERT_TRUE(other.flush());
    test::spinUntil([&] { return told.contains(u"weeklyMinutes"); });
    other.change(&Settings::schedule, Schedule{{3}, 9, 30});
    ASSERT_TRUE(other.flush());
    test::spinUntil([&] { return told.contains(u"schedule"); });
    EXPECT_EQ(watching.settings().schedule, (Schedule{{3}, 9, 30}));
}

TEST_F(SettingsFileTest, a_watch_tells_of_its_file_alone) {
    const auto path = [&](const char *name) { return dir.filePath(QString::fromUtf8(name)); };
    ASSERT_TRUE(QDir().mkdir(path("there")));
    ASSERT_TRUE(QFile::link(path("there/target.json"), path("link.json")));
    FileWatch watch(path("link.json"));
    FileWatch beside(path("beside.json"));
    int told = 0;
    int toldBeside = 0;
    QObject::connect(&watch, &FileWatch::changed, [&] { ++told; });
    QObject::connect(&beside, &FileWatch::changed, [&] { ++toldBeside; });
    // The disk is asked on another thread, and each tells once that it stands.
    EXPECT_EQ(told + toldBeside, 0);
    test::spinUntil([&] { return told == 1 && toldBeside == 1; });
    told = toldBeside = 0;
    // Twice: whatever the first could wrongly bring has come by the second.
    for (int round = 1; round <= 2; ++round) {
        writeFile(path("beside.json"), QByteArray(round, 'x'));
        test::spinUntil([&] { return toldBeside >= round; });
    }
    EXPECT_EQ(told, 0);
    writeFile(path("there/target.json"), "{}"); // where the link leads
    test::spinUntil([&] { return told == 1; });
    const int before = toldBeside;
    QFile::remove(path("there/target.json"));
    test::spinUntil([&] { return told >= 2; });
    EXPECT_EQ(toldBeside, before);
}

TEST_F(SettingsFileTest, carries_a_failed_write_with_the_next_one) {
    const QString folder = dir.filePath(QStringLiteral("sub"));
    Preferences preferences = open();
    writeFile(folder, "a file where the folder should be");
    QStringList told;
    int mended = 0;
    QObject::connect(&preferences, &Preferences::saveFailed,
                     [&](const QString &text) { told += text; });
    QObject::connect(&preferences, &Preferences::saved, [&] { ++mended; });
    preferences.change(&Settings::weeklyMinutes, 60);
    EXPECT_FALSE(preferences.flush());
    EXPECT_EQ(preferences.settings().weeklyMinutes, 60);
    ASSERT_TRUE(preferences.writeError());
    EXPECT_EQ(told, QStringList{*preferences.writeError()});
    EXPECT_TRUE(told[0].contains(u"weeklyMinutes")) << told[0].toStdString();
    preferences.reload();
    EXPECT_EQ(preferences.settings().weeklyMinutes, 60) << "what waits for the disk is not lost";
    QFile::remove(folder);
    preferences.change(&Settings::proposeTab, false);
    EXPECT_EQ(mended, 0);
    EXPECT_TRUE(preferences.flush());
    EXPECT_FALSE(preferences.writeError());
    preferences.change(&Settings::proposeTab, true);
    preferences.change(&Settings::proposeTab, false);
    EXPECT_TRUE(preferences.flush());
    EXPECT_EQ(mended, 1) << "told once, as the failure was";
    EXPECT_EQ(onDisk(), (QJsonObject{{QStringLiteral("proposeTab"), false},
                                     {QStringLiteral("weeklyMinutes"), 60}}));
}

TEST_F(SettingsFileTest, a_full_disk_leaves_the_old_settings_whole) {
    file = dir.filePath(QStringLiteral("full.json"));
    writeFile(file, R"({"job":"luthière"})");
    const QByteArray before = readFile(file);
    Preferences preferences = open();
    test::withFileSizeLimit(8, [&] {
        preferences.change(&Settings::weeklyMinutes, 60);
        EXPECT_FALSE(preferences.flush());
    });
    EXPECT_EQ(readFile(file), before);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
              (QStringList{QStringLiteral("full.json"), QStringLiteral("full.json.lock")}));
    EXPECT_TRUE(preferences.flush());
    EXPECT_EQ(onDisk().value(u"weeklyMinutes"), QJsonValue(60));
}

TEST_F(SettingsFileTest, saves_where_no_thread_can_be_started) {
    constexpr uid_t nobody = 65534; // root may start any number
    const QString topics = dir.filePath(QStringLiteral("topics.json"));
    ASSERT_TRUE(::geteuid() != 0 ||
                ::chown(QFile::encodeName(dir.path()).constData(), nobody, nobody) == 0);
    inProcesses(1, [&](int) {
        const rlimit none{0, 0};
        if ((::geteuid() == 0 && ::setuid(nobody) != 0) || ::setrlimit(RLIMIT_NPROC, &none) != 0) {
            return false;
        }
        const test::FixedClock clock;
        TopicStore store(topics, Resources(), clock);
        store.add({test::sampleTopic(QStringLiteral("a"))});
        Preferences preferences = open();
        preferences.change(&Settings::weeklyMinutes, 60);
        return preferences.flush() && store.flush();
    });
    EXPECT_EQ(onDisk().value(u"weeklyMinutes"), QJsonValue(60));
    EXPECT_EQ(json::decode<QList<Topic>>(readFile(topics)).size(), 1);
}

TEST_F(SettingsFileTest, keeps_its_files_to_the_user_whatever_the_umask) {
    for (const mode_t mask : {mode_t{0}, mode_t{0777}}) {
        file = dir.filePath(QStringLiteral("of%1/sub/settings.json").arg(mask));
        const mode_t before = ::umask(mask);
        Preferences preferences = open();
        preferences.change(&Settings::weeklyMinutes, 60);
        const bool written = preferences.flush();
        ::umask(before);
        EXPECT_TRUE(written);
        const auto modeOf = [](const QString &path) {
            struct stat state{};
            return ::stat(QFile::encodeName(path).constData(), &state) == 0 ? state.st_mode & 0777U
                                                                            : 0U;
        };
        EXPECT_EQ(modeOf(file), 0600U);
        EXPECT_EQ(modeOf(file + QStringLiteral(".lock")), 0600U);
        EXPECT_EQ(modeOf(QFileInfo(file).path()), 0700U);
        EXPECT_EQ(modeOf(QFileInfo(QFileInfo(file).path()).path()), 0700U);
    }
}

TEST_F(SettingsFileTest, refuses_what_the_system_does_not_let_it_read) {
    Preferences preferences = open();
    ASSERT_TRUE(QDir().mkpath(file));
    EXPECT_THROW(open(), std::system_error) << "a folder";
    QDir().rmdir(file);
    ASSERT_EQ(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_THROW(open(), std::system_error) << "a pipe, which is never waited on";
    preferences.reload();
    preferences.change(&Settings::weeklyMinutes, 60);
    EXPECT_FALSE(preferences.flush());
    EXPECT_EQ(preferences.settings().weeklyMinutes, 60);
    QFile::remove(file);
    writeFile(file, "{}");
    ASSERT_TRUE(QFile::resize(file, 200'000'000));
    EXPECT_THROW(open(), std::system_error) << "a file that is none of ours";
    EXPECT_EQ(QFileInfo(file).size(), 200'000'000);
    file = QFile::decodeName(dir.path().toUtf8() + "/\xE9t\xE9.json");
    EXPECT_THROW(open(), std::system_error) << "a name that it cannot carry";
}

TEST_F(SettingsFileTest, keeps_an_unreadable_file_aside_before_writing_and_says_so) {
    const QByteArray broken = R"({"weeklyMinutes":90,)";
    EXPECT_EQ(read(broken), Settings());
    // A lock that nobody holds, whatever stands in it, is no one's.
    writeFile(file + QStringLiteral(".lock"), "");
    Preferences preferences = open();
    ASSERT_TRUE(preferences.notice());
    EXPECT_TRUE(preferences.notice()->contains(file));
    EXPECT_EQ(readFile(file), broken);
    preferences.change(&Settings::weeklyMinutes, 60);
    ASSERT_TRUE(preferences.flush());
    ASSERT_TRUE(preferences.setAside());
    EXPECT_EQ(readFile(*preferences.setAside()), broken);
    EXPECT_EQ(onDisk().value(u"weeklyMinutes"), QJsonValue(60));
    read("");
    EXPECT_TRUE(open().notice()) << "an empty file";
    read("\xEF\xBB\xBF{\"weeklyMinutes\":90}");
    EXPECT_FALSE(open().notice());
    EXPECT_EQ(open().settings().weeklyMinutes, 90) << "a byte-order mark is no fault";
}

} // namespace
} // namespace vorle
