#include "tests/core/StoreFixture.h"
#include "tests/support/Variables.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cerrno>
#include <thread>

namespace vorle {
namespace {

using test::readFile;
using test::sampleTopic;
using test::writeFile;

class TopicStoreTest : public test::StoreFixture {};

TEST_F(TopicStoreTest, gives_back_after_a_restart_what_was_added) {
    const Topic a = sampleTopic(QStringLiteral("a"));
    Topic b = sampleTopic(QStringLiteral("b"), TopicStatus::Reserve);
    b.id = QUuid();
    {
        auto store = open();
        EXPECT_EQ(store->count(), 0);
        EXPECT_EQ(store->add({a, b, a}).size(), 2);
        EXPECT_TRUE(store->add({a}).isEmpty());
    }
    auto store = open();
    ASSERT_EQ(store->count(), 2);
    EXPECT_EQ(*store->topics()[0], a);
    EXPECT_EQ(store->topics(TopicStatus::Reserve)[0]->title, b.title);
    EXPECT_FALSE(store->topics()[1]->id.isNull());
    EXPECT_FALSE(store->setAside());
}

TEST_F(TopicStoreTest, writes_a_file_that_reads_well_by_hand) {
    auto store = open();
    store->save();
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(readFile(file), "[]\n");
    store->add({sampleTopic(QStringLiteral("a")), sampleTopic(QStringLiteral("b"))});
    EXPECT_TRUE(store->flush());
    const QByteArray text = readFile(file);
    EXPECT_TRUE(text.startsWith("[\n  {\n    \"firstStep\": \"\",\n    \"foundAt\": \"2026-11-01"));
    EXPECT_TRUE(text.contains("\n  },\n  {\n"));
    EXPECT_TRUE(text.endsWith("\n  }\n]\n"));
    EXPECT_EQ(text, json::encode(onDisk(), json::Style::Pretty) + '\n');
    struct stat state{};
    ASSERT_EQ(::stat(QFile::encodeName(file).constData(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777U, 0600U);
}

TEST_F(TopicStoreTest, takes_triage_decisions_and_takes_them_back) {
    auto store = open();
    const QUuid id = store->add({sampleTopic(QStringLiteral("a"))}).first();
    const auto before = store->triageState(id);
    const auto now = [&] { return *store->topic(id); };
    QList<QUuid> told;
    QObject::connect(store.get(), &TopicStore::topicChanged,
                     [&](const QUuid &which) { told.append(which); });

    EXPECT_TRUE(store->keep(id));
    EXPECT_EQ(now().status, TopicStatus::Program);
    EXPECT_EQ(now().triagedAt, clock.moment);
    EXPECT_TRUE(store->postpone(id) && store->postpone(id));
    EXPECT_EQ(now().status, TopicStatus::Reserve);
    EXPECT_EQ(now().postponedCount, 2);
    clock.moment = clock.moment.addDays(1);
    EXPECT_TRUE(store->judgeWorth(id, Worth::Useful));
    EXPECT_EQ(now().status, TopicStatus::Done);
    EXPECT_EQ(now().doneAt, clock.moment);
    clock.moment = clock.moment.addDays(1);
    EXPECT_TRUE(store->judgeWorth(id, Worth::Gem));
    EXPECT_EQ(now().worth, Worth::Gem);
    EXPECT_EQ(now().doneAt, clock.moment.addDays(-1));
    EXPECT_EQ(now().triagedAt, clock.moment);
    EXPECT_TRUE(store->keep(id));
    EXPECT_FALSE(now().doneAt || now().worth);
    EXPECT_TRUE(store->dismiss(id));
    EXPECT_EQ(now().status, TopicStatus::Dismissed);
    EXPECT_TRUE(store->backToInbox(id));
    EXPECT_EQ(now().status, TopicStatus::Inbox);
    EXPECT_TRUE(store->restore(id, *before));
    EXPECT_EQ(store->triageState(id), before);
    EXPECT_EQ(told, QList<QUuid>(9, id));

    EXPECT_TRUE(store->setNote(id, QStringLiteral("à relire")));
    EXPECT_TRUE(
        store->setBrief(id, Brief{{{QStringLiteral("t"), QStringLiteral("b")}}, {}, {}, {}, {}}));
    EXPECT_TRUE(store->setCorrection(id, Correction{3.5, {}, {}, clock.moment}));
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(onDisk(), QList<Topic>{now()});
    EXPECT_FALSE(store->keep(QUuid::createUuid()));
}

TEST_F(TopicStoreTest, completes_a_captured_link_in_place) {
    auto store = open();
    const QString link = QStringLiteral("https://example.org/mine");
    Topic captured = sampleTopic(QStringLiteral("mine"), TopicStatus::Pending);
    captured.capturedURL = link;
    captured.note = QStringLiteral("note");
    captured.sources = {{QStringLiteral("Ma page"), link}};
    captured.origin = Origin::Capture;
    store->add({sampleTopic(QStringLiteral("first")), captured});

    Topic judged = sampleTopic(QStringLiteral("judged"));
    EXPECT_FALSE(store->completeCaptured(judged)) << "unknown identity";
    judged.id = captured.id;
    judged.foundAt = clock.moment;
    judged.gallery = {{QStringLiteral("u"), QStringLiteral("f")}};
    EXPECT_TRUE(store->completeCaptured(judged));
    const TopicPtr topic = store->topics()[1];
    EXPECT_EQ(topic->title, judged.title);
    EXPECT_EQ(topic->capturedURL, link);
    EXPECT_EQ(topic->note, captured.note);
    EXPECT_EQ(topic->foundAt, captured.foundAt);
    EXPECT_EQ(topic->status, TopicStatus::Inbox);
    EXPECT_TRUE(topic->gallery.isEmpty());
    ASSERT_EQ(topic->sources.size(), 2);
    EXPECT_EQ(topic->sources[0], captured.sources[0]);

    EXPECT_TRUE(store->completeCaptured(*topic));
    EXPECT_EQ(store->topic(captured.id)->sources.size(), 2) << "the link is there already";
    store->dismiss(captured.id);
    EXPECT_FALSE(store->completeCaptured(judged));
    EXPECT_EQ(store->topic(captured.id)->status, TopicStatus::Dismissed);
}

// What the judge makes of the link takes its place: a decision taken before would be lost.
TEST_F(TopicStoreTest, a_link_being_read_can_be_dismissed_and_nothing_else) {
    auto store = open();
    Topic captured = sampleTopic(QStringLiteral("mine"), TopicStatus::Pending);
    captured.capturedURL = QStringLiteral("https://example.org/mine");
    captured.readLevel = ReadLevel::None;
    captured.criteria.reset();
    const QUuid id = store->add({captured}).first();
    const Topic before = *store->topic(id);
    EXPECT_TRUE(isBeingRead(before));
    EXPECT_FALSE(store->keep(id));
    EXPECT_FALSE(store->postpone(id));
    EXPECT_FALSE(store->backToInbox(id));
    EXPECT_FALSE(store->markDone(id));
    EXPECT_FALSE(store->judgeWorth(id, Worth::Gem));
    EXPECT_EQ(*store->topic(id), before);
    const auto state = store->triageState(id);
    EXPECT_TRUE(store->dismiss(id));
    EXPECT_FALSE(isBeingRead(*store->topic(id)));
    EXPECT_FALSE(store->keep(id)) << "there is still no judgment to keep";
    EXPECT_FALSE(store->backToInbox(id));
    EXPECT_EQ(store->topic(id)->status, TopicStatus::Dismissed);
    EXPECT_TRUE(store->dismiss(id));
    EXPECT_TRUE(store->restore(id, *state));
    EXPECT_FALSE(store->keep(id));
}

TEST_F(TopicStoreTest, releases_pending_topics_but_not_links_still_being_read) {
    auto store = open();
    Topic captured = sampleTopic(QStringLiteral("c"), TopicStatus::Pending);
    captured.capturedURL = QStringLiteral("https://example.org/c");
    const auto ids = store->add({sampleTopic(QStringLiteral("a"), TopicStatus::Pending),
                                 sampleTopic(QStringLiteral("b"), TopicStatus::Pending), captured,
                                 sampleTopic(QStringLiteral("d"), TopicStatus::Reserve)});
    EXPECT_EQ(store->releasePending({ids[0], ids[3]}), 1);
    EXPECT_EQ(store->releaseAllPending(), 1);
    EXPECT_EQ(store->topics(TopicStatus::Pending).size(), 1);
    EXPECT_EQ(store->topic(ids[3])->status, TopicStatus::Reserve);
    EXPECT_EQ(store->releasePending({ids[2]}), 1);
}

TEST_F(TopicStoreTest, takes_away_a_runs_pending_topic_alone) {
    auto store = open();
    Topic captured = sampleTopic(QStringLiteral("c"), TopicStatus::Pending);
    captured.capturedURL = QStringLiteral("https://example.org/c");
    const auto ids = store->add({sampleTopic(QStringLiteral("a"), TopicStatus::Pending), captured,
                                 sampleTopic(QStringLiteral("d"))});
    EXPECT_FALSE(store->withdrawPending(ids[1], QUuid())) << "the user's own link";
    EXPECT_FALSE(store->withdrawPending(ids[2], QUuid())) << "the user has it already";
    EXPECT_FALSE(store->withdrawPending(QUuid::createUuid(), QUuid()));
    EXPECT_TRUE(store->withdrawPending(ids[0], QUuid()));
    EXPECT_EQ(store->count(), 2);
    store->keep(ids[2]);
    ASSERT_TRUE(store->flush());
    EXPECT_EQ(onDisk().size(), 2);
}

// Lists remember where their topics stand by these numbers, and are not told of what goes unseen.
TEST_F(TopicStoreTest, keeps_each_topics_position_whatever_comes_and_goes) {
    auto store = open();
    const auto add = [&](int count) {
        Topic topic = sampleTopic(QStringLiteral("p"), TopicStatus::Pending);
        topic.id = {}; // each gets its own
        return store->add(QList<Topic>(count, topic));
    };
    const auto first = add(7);
    QHash<QUuid, qsizetype> positions;
    for (const QUuid &id : first) {
        positions.insert(id, store->position(id));
    }
    for (const qsizetype gone : {3, 0, 6, 5}) {
        ASSERT_TRUE(store->withdrawPending(first[gone], QUuid()));
        positions.remove(first[gone]);
        EXPECT_EQ(store->position(first[gone]), -1);
        EXPECT_EQ(store->topic(first[gone]), nullptr);
    }
    for (const QUuid &id : add(2)) {
        EXPECT_GT(store->position(id), std::ranges::max(positions.values()));
        positions.insert(id, store->position(id));
    }
    ASSERT_TRUE(store->setNote(first[4], QStringLiteral("a note")));
    const auto topics = store->topics();
    ASSERT_EQ(topics.size(), 5);
    EXPECT_EQ(topics[2]->note, QStringLiteral("a note"));
    for (qsizetype index = 0; index < topics.size(); ++index) {
        const QUuid &id = topics[index]->id;
        EXPECT_EQ(store->topic(id), topics[index]);
        EXPECT_EQ(store->position(id), positions.value(id, -2));
        EXPECT_EQ(store->positionAt(index), store->position(id));
        EXPECT_TRUE(index == 0 || store->positionAt(index - 1) < store->positionAt(index));
    }
}

TEST_F(TopicStoreTest, repairs_summaries_that_end_with_a_name) {
    const std::pair<QStringView, QStringView> cases[] = {
        {u"Une nouvelle API · Tiravue", u"Une nouvelle API"},
        {u"Version 2 · beta", u"Version 2 · beta"},
        {u"Deux · Un · Mon Projet", u"Deux · Un"},
        {u"Été · Écran", u"Été"},
        {u"A · B2", u"A · B2"},
        {u"A · B", u"A · B"},
    };
    QList<Topic> topics;
    for (const auto &[written, read] : cases) {
        topics.append(sampleTopic(written.toString()));
        topics.last().summary = written.toString();
    }
    writeFile(file, json::encode(topics));
    const auto loaded = open()->topics();
    for (qsizetype i = 0; i < topics.size(); ++i) {
        EXPECT_EQ(loaded[i]->summary, cases[i].second.toString());
    }
}

TEST_F(TopicStoreTest, leaves_the_summaries_of_imported_answers_alone) {
    writeFile(dir.filePath(QStringLiteral("search-tiravue-2026-10-26.json")),
              R"({"structured_output":{"sujets":[{"titre":"T","note":7,"nature":"gain",
            "resume":"Une nouvelle API · Tiravue","pourquoi":"p","premier_pas":"s","sources":[]}]}})");
    test::Variables variables;
    variables.set("VORLE_SAMPLE_DATA", {});
    const auto imported = open();
    EXPECT_EQ(imported->topics().value(0)->summary, QStringLiteral("Une nouvelle API · Tiravue"));
    ASSERT_TRUE(imported->flush());
    EXPECT_EQ(open()->topics().value(0)->summary, QStringLiteral("Une nouvelle API · Tiravue"))
        << "what this version wrote is no remainder of an earlier one";
}

TEST_F(TopicStoreTest, gives_entries_without_an_identity_of_their_own_the_same_one_at_every_load) {
    QList<Topic> topics{sampleTopic(QStringLiteral("a")), sampleTopic(QStringLiteral("b")),
                        sampleTopic(QStringLiteral("c")), sampleTopic(QStringLiteral("d")),
                        sampleTopic(QStringLiteral("e"))};
    topics[1].id = topics[0].id;
    topics[2].id = QUuid();
    topics[3].id = QUuid();
    topics[4].id = topics[0].id;
    writeFile(file, "\xEF\xBB\xBF" + json::encode(topics));
    const auto identities = [&] {
        QList<QUuid> ids;
        for (const TopicPtr &topic : open()->topics()) {
            ids.append(topic->id);
        }
        return ids;
    };
    const QList<QUuid> first = identities();
    ASSERT_EQ(first.size(), 5) << "neither a zero identity nor a byte-order mark is a fault";
    EXPECT_EQ(first[0], topics[0].id);
    EXPECT_EQ(QSet<QUuid>(first.begin(), first.end()).size(), 5);
    EXPECT_FALSE(first.contains(QUuid()));
    EXPECT_EQ(identities(), first);
    open()->keep(first[3]);
    EXPECT_EQ(identities(), first) << "and beyond a save";
}

TEST_F(TopicStoreTest, finds_its_file_by_kind_and_environment) {
    test::Variables variables;
    variables.set("XDG_DATA_HOME", dir.filePath(QStringLiteral("data")));
    variables.unset("VORLE_STORE");
    EXPECT_EQ(TopicStore::location(TopicStore::Kind::Real),
              dir.filePath(QStringLiteral("data/vorle/topics.json")));
    EXPECT_EQ(TopicStore::location(TopicStore::Kind::Demo),
              dir.filePath(QStringLiteral("data/vorle/demo-topics.json")));
    struct stat state{};
    ASSERT_EQ(
        ::stat(QFile::encodeName(dir.filePath(QStringLiteral("data/vorle"))).constData(), &state),
        0);
    EXPECT_EQ(state.st_mode & 0777U, 0700U);
    const QByteArray shared = QFile::encodeName(dir.filePath(QStringLiteral("shared")));
    ASSERT_EQ(::mkdir(shared.constData(), 0755), 0);
    qputenv("VORLE_STORE", shared + "/topics.json");
    EXPECT_EQ(TopicStore::location(TopicStore::Kind::Real),
              QFile::decodeName(shared + "/topics.json"));
    ASSERT_EQ(::stat(shared.constData(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777U, 0755U) << "a folder of the user's keeps its mode";
    variables.set("VORLE_STORE", file);
    EXPECT_EQ(TopicStore(TopicStore::Kind::Real, Resources(), clock).file(), file);
    EXPECT_EQ(TopicStore::location(TopicStore::Kind::Demo),
              dir.filePath(QStringLiteral("data/vorle/demo-topics.json")))
        << "a demonstration never takes the user's own file";
    const auto refusal = [&](const QByteArray &path) {
        qputenv("VORLE_STORE", path);
        try {
            TopicStore::location(TopicStore::Kind::Real);
        } catch (const std::system_error &error) {
            return error.code().value();
        }
        return 0;
    };
    writeFile(file, "a file where a folder should be");
    EXPECT_EQ(refusal(QFile::encodeName(file + QStringLiteral("/sub/topics.json"))), ENOTDIR);
    EXPECT_EQ(refusal("/proc/vorle/topics.json"), ENOENT);
    EXPECT_EQ(refusal(dir.path().toUtf8() + "/" + QByteArray(300, 'x') + "/topics.json"),
              ENAMETOOLONG);
    EXPECT_EQ(refusal(dir.path().toUtf8() + "/\xE9t\xE9/topics.json"), EILSEQ);
}

TEST_F(TopicStoreTest, a_preview_touches_no_file) {
    TopicStore store(QString(), Resources(), clock);
    EXPECT_TRUE(store.isPreview());
    store.add({sampleTopic(QStringLiteral("a"))});
    EXPECT_TRUE(store.flush());
    EXPECT_TRUE(QDir(dir.path()).isEmpty());
}

TEST_F(TopicStoreTest, starts_on_sample_topics_when_asked_and_nothing_is_there) {
    const QByteArray sample = R"({"structured_output":{"sujets":[{"titre":"T","note":7,
        "nature":"gain","resume":"r","pourquoi":"p","premier_pas":"s","sources":[]}]}})";
    writeFile(dir.filePath(QStringLiteral("search-tiravue-2026-10-26.json")), sample);
    test::Variables variables;
    variables.set("VORLE_SAMPLE_DATA", {});
    EXPECT_EQ(open()->topics().value(0)->project, QStringLiteral("Tiravue"));
    EXPECT_EQ(onDisk().size(), 1);
    writeFile(file, "[]");
    EXPECT_EQ(open()->count(), 0) << "an empty list is a list";
    QFile::remove(file);
    writeFile(dir.filePath(QStringLiteral("search-tiravue-2026-10-26.json")), sample.chopped(3));
    EXPECT_EQ(open()->count(), 0);
}

TEST_F(TopicStoreTest, writes_through_a_link_and_keeps_the_files_mode) {
    const QString real = dir.filePath(QStringLiteral("synced/real.json"));
    QDir(dir.path()).mkdir(QStringLiteral("synced"));
    ASSERT_TRUE(QFile::link(QStringLiteral("synced/real.json"), file));
    open()->add({sampleTopic(QStringLiteral("a"))});
    EXPECT_TRUE(QFileInfo(file).isSymbolicLink());
    ::chmod(QFile::encodeName(real).constData(), 0640);
    open()->add({sampleTopic(QStringLiteral("b"))});
    struct stat state{};
    ASSERT_EQ(::stat(QFile::encodeName(real).constData(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777U, 0640U);
    EXPECT_EQ(onDisk().size(), 2);
    EXPECT_EQ(QDir(dir.filePath(QStringLiteral("synced"))).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("real.json")});
}

TEST_F(TopicStoreTest, stops_the_program_when_used_from_another_thread) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            TopicStore store(QString(), Resources(), clock);
            std::thread([&] { store.keep(QUuid()); }).join();
        },
        "TopicStore");
}

} // namespace
} // namespace vorle
