#include "core/ScoreProvenanceLog.h"
#include "core/Corrections.h"
#include "tests/core/Samples.h"
#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTranslator>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::readFile;
using test::sampleTopic;
using test::writeFile;

class ScoreProvenanceLogTest : public testing::Test {
protected:
    ScoreProvenance provenance(const QUuid &topic, double relevance) const {
        ScoreProvenance provenance;
        provenance.topic = topic;
        provenance.at = clock.moment;
        provenance.agent = QStringLiteral("claude");
        provenance.relevance = relevance;
        provenance.bytesRead = 5400;
        provenance.examples = 12;
        provenance.reflexes = {
            {QStringLiteral("stack-first"), QStringLiteral("Les mises à jour…")}};
        return provenance;
    }
    QList<ScoreProvenance> onDisk() const {
        return json::decode<QList<ScoreProvenance>>(readFile(file));
    }

    QTemporaryDir dir;
    test::FixedClock clock;
    QString file = dir.filePath(QStringLiteral("score-notes.json"));
    TopicStore store{dir.filePath(QStringLiteral("topics.json")), Resources(), clock};
};

TEST_F(ScoreProvenanceLogTest, keeps_one_note_a_topic_and_drops_those_of_topics_that_are_gone) {
    const auto ids =
        store.add({sampleTopic(QStringLiteral("a")), sampleTopic(QStringLiteral("b"))});
    {
        ScoreProvenanceLog log(store, clock);
        EXPECT_FALSE(log.of(ids[0]));
        test::waitFor(log.add({provenance(ids[0], 7.6), provenance(QUuid::createUuid(), 3)}));
        test::waitFor(log.add({provenance(ids[0], 8.2), provenance(ids[1], 5)}));
    }
    EXPECT_EQ(onDisk().size(), 2);
    ScoreProvenanceLog again(store, clock);
    EXPECT_EQ(again.of(ids[0]), provenance(ids[0], 8.2));
    EXPECT_EQ(again.of(ids[1]), provenance(ids[1], 5));
    EXPECT_EQ(
        QDir(dir.path()).entryList({QStringLiteral("*score-notes*")}, QDir::Files | QDir::Hidden),
        QStringList{QStringLiteral("score-notes.json")});
}

// Two batches come back while a write is under way: none may be lost to the other.
TEST_F(ScoreProvenanceLogTest, writes_what_came_while_it_was_writing) {
    QList<Topic> topics;
    for (int i = 0; i < 30; ++i) {
        topics += sampleTopic(QString::number(i));
    }
    const auto ids = store.add(topics);
    ScoreProvenanceLog log(store, clock);
    std::vector<Task<>> saves;
    for (const QUuid &id : ids) {
        saves.push_back(log.add({provenance(id, 6)}));
    }
    for (Task<> &save : saves) {
        test::waitFor(std::move(save));
    }
    EXPECT_EQ(onDisk().size(), 30);
}

TEST_F(ScoreProvenanceLogTest, keeps_an_unreadable_file_aside_and_never_fails) {
    const auto ids = store.add({sampleTopic(QStringLiteral("a"))});
    writeFile(file, "{\"not\":\"a list\"}");
    ScoreProvenanceLog log(store, clock);
    EXPECT_FALSE(log.of(ids[0]));
    EXPECT_EQ(readFile(file), "{\"not\":\"a list\"}");
    test::waitFor(log.add({provenance(ids[0], 7)}));
    EXPECT_EQ(onDisk().size(), 1);
    const QStringList aside =
        QDir(dir.path()).entryList({QStringLiteral("score-notes.json.illisible-*")});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(readFile(dir.filePath(aside.first())), "{\"not\":\"a list\"}");

    QFile::remove(file);
    QDir(dir.path()).mkdir(QStringLiteral("score-notes.json")); // cannot be replaced
    test::waitFor(log.add({provenance(ids[0], 8)}));
    EXPECT_EQ(log.of(ids[0])->relevance, 8);
}

TEST_F(ScoreProvenanceLogTest, keeps_every_note_while_the_topics_cannot_be_read) {
    const auto ids = store.add({sampleTopic(QStringLiteral("a"))});
    ScoreProvenanceLog first(store, clock);
    test::waitFor(first.add({provenance(ids[0], 7)}));
    const QString broken = dir.filePath(QStringLiteral("broken/topics.json"));
    QDir(dir.path()).mkdir(QStringLiteral("broken"));
    writeFile(broken, "[");
    QFile::copy(file, dir.filePath(QStringLiteral("broken/score-notes.json")));
    const TopicStore unread(broken, Resources(), clock);
    ScoreProvenanceLog log(unread, clock);
    test::waitFor(log.add({provenance(QUuid::createUuid(), 5)}));
    EXPECT_TRUE(log.of(ids[0]));
}

TEST_F(ScoreProvenanceLogTest, a_file_that_the_system_does_not_let_be_read_is_not_replaced) {
    const auto ids =
        store.add({sampleTopic(QStringLiteral("a")), sampleTopic(QStringLiteral("b"))});
    ScoreProvenanceLog first(store, clock);
    test::waitFor(first.add({provenance(ids[0], 7)}));
    const QString healthy = file + QStringLiteral(".healthy");
    ASSERT_TRUE(QFile::rename(file, healthy));
    ASSERT_TRUE(QFile::link(QFileInfo(file).fileName(), file)); // a loop: no one can read it
    ScoreProvenanceLog log(store, clock);
    test::waitFor(log.add({provenance(ids[1], 5)}));
    ASSERT_TRUE(QFile::remove(file));
    ASSERT_TRUE(QFile::rename(healthy, file));
    EXPECT_TRUE(log.of(ids[0])) << "read once it could be";
    test::waitFor(log.add({}));
    ScoreProvenanceLog later(store, clock);
    EXPECT_TRUE(later.of(ids[0]));
    EXPECT_TRUE(later.of(ids[1]));
}

TEST_F(ScoreProvenanceLogTest, a_preview_and_another_topics_file_have_nothing_to_do_with_it) {
    const TopicStore preview(QString(), Resources(), clock);
    ScoreProvenanceLog none(preview, clock);
    test::waitFor(none.add({provenance(QUuid::createUuid(), 5)}));
    TopicStore demo(dir.filePath(QStringLiteral("demo-topics.json")), Resources(), clock);
    const auto ids = demo.add({sampleTopic(QStringLiteral("a"))});
    ScoreProvenanceLog log(demo, clock);
    test::waitFor(log.add({provenance(ids[0], 5)}));
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("demo-topics-score-notes.json"))));
}

TEST(Corrections, are_whole_scores_in_range_with_the_offered_reasons_in_their_order) {
    EXPECT_EQ(correctionReasons(),
              (QStringList{QStringLiteral("hors de mon domaine"),
                           QStringLiteral("plus important que ça"), QStringLiteral("pas fiable")}));
    const QDateTime now(QDate(2026, 11, 2), QTime(9, 0), Qt::UTC);
    const Correction made =
        correctionOf(12,
                     {QStringLiteral("pas fiable"), QStringLiteral("autre"),
                      QStringLiteral("hors de mon domaine"), QStringLiteral("pas fiable")},
                     QStringLiteral("  trop long \n"), now);
    EXPECT_EQ(made,
              (Correction{10,
                          {QStringLiteral("hors de mon domaine"), QStringLiteral("pas fiable")},
                          QStringLiteral("trop long"),
                          now}));
    EXPECT_EQ(correctionOf(-3, {}, {}, now).score, 0);
    EXPECT_EQ(correctionOf(6.5, {}, {}, now).score, 7);
}

/// A table of texts in another language.
class Capitals final : public QTranslator {
public:
    QString translate(const char *, const char *text, const char *, int) const override {
        return QString::fromUtf8(text).toUpper();
    }
    bool isEmpty() const override { return false; }
};

TEST(Corrections, are_kept_in_words_that_no_language_changes) {
    const QString kept = QStringLiteral("pas fiable");
    EXPECT_EQ(correctionReasonText(kept), kept);
    EXPECT_EQ(correctionReasonText(QStringLiteral("trop long")), QStringLiteral("trop long"))
        << "of another version";
    Capitals other;
    QCoreApplication::installTranslator(&other);
    for (const QString &reason : correctionReasons()) {
        EXPECT_EQ(correctionReasonText(reason), reason.toUpper());
    }
    EXPECT_EQ(correctionOf(5, {kept}, {}, {}).tags, QStringList{kept});
    QCoreApplication::removeTranslator(&other);
}

TEST(Corrections, show_the_users_score_with_the_former_one) {
    const struct {
        std::optional<double> own;
        ReadLevel level;
        StandingScore shown;
    } cases[] = {
        {std::nullopt, ReadLevel::Full, {7, std::nullopt}},
        {9, ReadLevel::Full, {9, 7}},
        {0, ReadLevel::Meta, {0, 7}},
        {7, ReadLevel::Full, {7, std::nullopt}},
        {6.6, ReadLevel::Full, {7, std::nullopt}},
        {400, ReadLevel::Full, {10, 7}},
        {std::nullopt, ReadLevel::None, {std::nullopt, std::nullopt}},
        {4, ReadLevel::None, {4, std::nullopt}},
    };
    for (const auto &one : cases) {
        Topic topic = sampleTopic(QStringLiteral("a"));
        topic.readLevel = one.level;
        if (one.own) {
            topic.correction = Correction{*one.own, {}, {}, {}};
        }
        EXPECT_EQ(standingScore(topic), one.shown) << one.own.value_or(-1);
    }
}

} // namespace
} // namespace vorle
