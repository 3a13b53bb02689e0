#include "core/RediscoveryLog.h"
#include "core/ScoreProvenanceLog.h"
#include "tests/core/StoreFixture.h"
#include "tests/support/Wait.h"

#include <QJsonDocument>

/// Files that a later version of the program wrote.
namespace vorle {
namespace {

using test::readFile;
using test::sampleTopic;
using test::writeFile;

class LaterVersion : public test::StoreFixture {};

TEST_F(LaterVersion, keeps_what_a_later_version_wrote) {
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
    writeFile(file, text + '\n');
    auto store = open();
    ASSERT_EQ(store->count(), 1);
    const QUuid id = store->topics()[0]->id;
    store->save();
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(readFile(file), text + '\n');
    Topic judged = *store->topic(id);
    judged.unknown.clear();
    store->completeCaptured(judged);
    store->keep(id);
    EXPECT_TRUE(store->flush());
    EXPECT_TRUE(readFile(file).contains("2.50, 1e3, \"\\u00e9\"]\n    },"));
    EXPECT_TRUE(readFile(file).contains("12345678901234567890"));
}

// Each file beside the topics is read, and written anew for one more record.
TEST_F(LaterVersion, keeps_what_a_later_version_wrote_beside_the_topics) {
    auto store = open();
    const auto ids = store->add({sampleTopic(QStringLiteral("a"), TopicStatus::Reserve),
                                 sampleTopic(QStringLiteral("b"), TopicStatus::Reserve)});
    const QByteArray id = ids[0].toByteArray(QUuid::WithoutBraces).toUpper();
    const auto compact = [&](const char *name) {
        return QJsonDocument::fromJson(readFile(dir.filePath(QString::fromUtf8(name))))
            .toJson(QJsonDocument::Compact);
    };

    const QByteArray find = R"({"at":"2026-11-01T08:00:00Z","by":"b","topic":")" + id + "\"}";
    writeFile(dir.filePath(QStringLiteral("found-again.json")), '[' + find + ']');
    RediscoveryLog finds(*store, clock);
    test::waitFor(finds.record(ids[1]));
    EXPECT_TRUE(compact("found-again.json").startsWith('[' + find + ','));

    const QByteArray note = R"({"at":"2026-11-01T08:00:00Z","bytesRead":1,"examples":0,)"
                            R"("model":"m","reflexes":[{"id":"r","since":2,"title":"R"}],)"
                            R"("relevance":7,"topic":")" +
                            id + "\"}";
    writeFile(dir.filePath(QStringLiteral("score-notes.json")), '[' + note + ']');
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
    writeFile(dir.filePath(QStringLiteral("runs.json")), runs);
    report.date = report.date.addDays(1);
    store->addRun(report);
    const QByteArray kept = compact("runs.json");
    for (int key = 1; key <= keys; ++key) {
        EXPECT_EQ(kept.count("\"ahead" + QByteArray::number(key) + "\":[1,\"x\"]"), 1) << key;
    }
    EXPECT_EQ(store->history().size(), 2);
}

} // namespace
} // namespace vorle
