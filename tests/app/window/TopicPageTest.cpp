// What the enlarged card is told of its topic, without a window.

#include "app/window/TopicPage.h"

#include "app/models/ListParts.h"
#include "briefs/BriefWriter.h"
#include "core/Preferences.h"
#include "tests/core/Samples.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Settle.h"
#include "tests/support/Wait.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;

class TopicPageTest : public testing::Test {
protected:
    ~TopicPageTest() override {
        briefs.stop();
        test::settle([this] { return !briefs.running(); });
    }

    QUuid add(const Topic &topic) { return store.add({topic}).first(); }
    QString essential() const { return page.essentials().value(0).value<ReadingPart>().body; }

    test::ScriptedAgent agents;
    EngineAgent agent{agents.environment(), {}};
    Asker asker{agent, Resources(QStringLiteral(VORLE_RESOURCES)), 1ms};
    Preferences preferences{
        std::make_unique<SettingsFile>(agents.home() + QStringLiteral("/settings.json"))};
    test::FixedClock clock;
    TopicStore store{TopicStore::Kind::Preview, Resources(), clock};
    ScoreProvenanceLog provenance{store, clock};
    BriefWriter briefs{{preferences, store, asker, clock}};
    TopicPage page{store, provenance, briefs, clock};
};

TEST_F(TopicPageTest, shows_the_topic_that_was_chosen_and_follows_its_changes_alone) {
    Topic topic = test::sampleTopic(QStringLiteral("Le sien"));
    topic.criteria = Judgment::Criteria{8, 7, 6, 5, 20};
    topic.readLevel = ReadLevel::Full;
    topic.seenText = QByteArray("lu\u202E ici");
    const QUuid id = add(topic);
    const QUuid other = add(test::sampleTopic(QStringLiteral("Un autre")));
    EXPECT_EQ(page.topicId(), QString());
    EXPECT_TRUE(page.grades().isEmpty() && page.facts().isEmpty());

    QSignalSpy changes(&page, &TopicPage::topicChanged);
    const QString chosen = id.toString(QUuid::WithoutBraces).toUpper(); // as cards name it
    page.setTopicId(chosen);
    page.setTopicId(chosen); // the same again is no change
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(page.topicId(), chosen);
    EXPECT_EQ(page.grades().size(), 4);
    EXPECT_EQ(page.gradesText(),
              QStringLiteral("impact 8 · concret 7 · nouveauté 6 · fiabilité 5"));
    EXPECT_TRUE(page.scoreText().endsWith(QStringLiteral(" sur 10")));
    EXPECT_EQ(page.seenText(), QStringLiteral("lu ici")) << "nothing turns the line round";
    EXPECT_FALSE(page.corrected() || page.hasBrief());

    store.setCorrection(other, Correction{3, {}, {}, clock.moment});
    EXPECT_EQ(changes.count(), 1);
    store.setCorrection(id, Correction{9, {}, {}, clock.moment});
    EXPECT_EQ(changes.count(), 2);
    EXPECT_TRUE(page.corrected());

    page.setTopicId(QStringLiteral("rien"));
    EXPECT_EQ(page.topicId(), QString());
    EXPECT_EQ(page.seenText(), QString());
}

TEST_F(TopicPageTest, words_a_note_as_it_can_be_shown_and_leaves_its_code_alone) {
    Topic topic = test::sampleTopic(QStringLiteral("a"));
    topic.brief = Brief{
        .essentials = {{.title = QStringLiteral("Titre"), .body = QStringLiteral("Quoi ?\u200B")}},
        .details = {{.title = codePartTitle(), .body = QStringLiteral("a ? b : c\u202E")}},
        .project = std::nullopt,
        .unclear = {QStringLiteral("La date !")},
        .sources = {{.title = QStringLiteral("Notes"),
                     .url = QStringLiteral("https://example.org/a"),
                     .adds = {}}}};
    page.setTopicId(add(topic).toString());
    ASSERT_TRUE(page.hasBrief());
    EXPECT_EQ(essential(), QStringLiteral("Quoi\u202F?"));
    const auto code = page.parts().value(0).value<ReadingPart>();
    EXPECT_TRUE(code.code);
    EXPECT_EQ(code.body, QStringLiteral("a ? b : c"));
    EXPECT_EQ(page.forProject(), QString());
    EXPECT_EQ(page.unclear(), QStringLiteral("La date\u202F!"));
    const auto source = page.briefSources().value(0).value<NamedLink>();
    EXPECT_EQ(source.url, QStringLiteral("https://example.org/a"));
    EXPECT_EQ(source.address, source.url);
}

TEST_F(TopicPageTest, parts_the_code_of_a_note_from_its_words) {
    const QString fence = QStringLiteral("```");
    using Pieces = QList<ReadingPart>;
    const auto piece = [](const char *title, const char *body, bool code) {
        return ReadingPart{QString::fromUtf8(title), QString::fromUtf8(body), code};
    };
    const struct {
        QString body;
        Pieces pieces;
    } cases[] = {
        {QStringLiteral("Un.\nDeux"), {piece("T", "Un.\nDeux", false)}},
        {QStringLiteral("Lance\n```sh\n  npm ci ?\n```\npuis ceci !"),
         {piece("T", "Lance", false), piece("", "  npm ci ?", true),
          piece("", "puis ceci\u202F!", false)}},
        {QStringLiteral("```\na\n\nb\n```"), {piece("T", "a\n\nb", true)}},
        {QStringLiteral("Avant\n```\nreste"),
         {piece("T", "Avant", false), piece("", "reste", true)}},
        {QStringLiteral("Vide\n```\n```"), {piece("T", "Vide", false)}},
        {QString(), {piece("T", "", false)}},
    };
    for (const auto &[body, pieces] : cases) {
        Topic topic = test::sampleTopic(QStringLiteral("a"));
        topic.brief = Brief{.essentials = {},
                            .details = {{.title = QStringLiteral("T"), .body = body}},
                            .project = std::nullopt,
                            .unclear = {},
                            .sources = {}};
        page.setTopicId(add(topic).toString());
        Pieces shown;
        for (const QVariant &part : page.parts()) {
            shown += part.value<ReadingPart>();
        }
        EXPECT_EQ(shown, pieces) << body.toStdString();
    }
}

TEST_F(TopicPageTest, a_note_that_is_asked_for_comes_or_says_why_it_does_not) {
    page.askBrief(); // for no topic
    EXPECT_FALSE(briefs.running());
    const QUuid id = add(test::sampleTopic(QStringLiteral("a")));
    page.setTopicId(id.toString());
    page.askBrief();
    test::spinUntil([&] { return !briefs.running(); });
    EXPECT_EQ(page.briefFailure(), QStringLiteral("Claude Code est introuvable sur ce Mac."));

    agents.signIn();
    agents.answerBy(R"({"candidates":{},"brief":{"essentials":[{"title":"T","body":"Enfin."}],)"
                    R"("details":[],"unclear":[],"sources":[],"minutes":1}})");
    page.askBrief();
    test::spinUntil([&] { return !briefs.running(); });
    EXPECT_EQ(page.briefFailure(), QString());
    EXPECT_EQ(essential(), QStringLiteral("Enfin."));
}

TEST_F(TopicPageTest, tells_of_its_lists_only_where_they_are_others) {
    Topic topic = test::sampleTopic(QStringLiteral("Le sien"));
    topic.criteria = Judgment::Criteria{8, 7, 6, 5, 20};
    topic.brief = Brief{};
    const QUuid id = add(topic);
    page.setTopicId(id.toString());
    QSignalSpy changes(&page, &TopicPage::topicChanged);
    QSignalSpy briefChanges(&page, &TopicPage::briefChanged);
    QSignalSpy scoreChanges(&page, &TopicPage::scoreChanged);
    store.setNote(id, QStringLiteral("le soir"));
    store.setGallery(id, {{topic.sources.first().url, QStringLiteral("a.img")}});
    EXPECT_EQ(changes.count(), 2);
    EXPECT_EQ(briefChanges.count() + scoreChanges.count(), 0) << "what is marked there stays";
    store.setBrief(id, std::nullopt);
    EXPECT_EQ(briefChanges.count(), 1);
    store.setCorrection(id, Correction{3, {}, {}, {}});
    EXPECT_EQ(briefChanges.count(), 1);
    EXPECT_EQ(scoreChanges.count(), 1);
}

} // namespace
} // namespace vorle
