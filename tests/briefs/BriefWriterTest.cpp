#include "briefs/BriefWriter.h"

#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "tests/core/Samples.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <QFile>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class BriefWriterTest : public testing::Test {
protected:
    BriefWriterTest() {
        m_agents.signIn(AgentKind::Claude);
        for (const char *name : {"/brief-prompt.md", "/brief-schema.json"}) {
            const QString file = QString::fromLatin1(name);
            test::writeFile(m_agents.home() + file,
                            test::readFile(QStringLiteral(VORLE_RESOURCES) + file));
        }
        answer(good);
    }

    void SetUp() override {
        m_writer = std::make_unique<BriefWriter>(
            BriefWriter::Parts{m_preferences, m_store, m_asker, m_clock});
    }

    void TearDown() override { EXPECT_THAT(m_agents.leftovers(), IsEmpty()); }

    /// Every call gives this as its structured answer.
    void answer(const QByteArray &json) const {
        script("cat <<'END'\n" + envelope(json) + "\nEND");
    }
    void script(const QByteArray &shell) const { m_agents.install(AgentKind::Claude, shell); }
    static QByteArray envelope(const QByteArray &json) {
        return R"({"is_error":false,"total_cost_usd":0.25,"structured_output":)" + json + "}";
    }

    QUuid add(const char *title) {
        return m_store.add({test::sampleTopic(QString::fromLatin1(title))}).first();
    }

    void finish() const {
        test::spinUntil([&] { return !m_writer->running(); });
    }

    std::optional<Brief> briefOf(const QUuid &id) const { return m_store.topic(id)->brief; }

    static constexpr auto good = R"json({"essentials":[{"title":"La 7 sort","body":"Le 20."}],
        "details":[],"unclear":[],"sources":[],"minutes":3})json";

    test::ScriptedAgent m_agents;
    EngineAgent m_agent{m_agents.environment(), {}};
    Asker m_asker{m_agent, Resources(m_agents.home()), 1ms};
    Preferences m_preferences{
        std::make_unique<SettingsFile>(m_agents.home() + QStringLiteral("/settings.json"))};
    test::FixedClock m_clock;
    TopicStore m_store{TopicStore::Kind::Preview, Resources(m_agents.home()), m_clock};
    std::unique_ptr<BriefWriter> m_writer;
};

TEST_F(BriefWriterTest, writes_one_at_a_time_in_the_order_asked) {
    // Holds each call until the test lets it go.
    script("while [ ! -e \"$HOME/go$n\" ]; do sleep 0.01; done\ncat <<'END'\n" + envelope(good) +
           "\nEND");
    const QUuid first = add("un");
    const QUuid second = add("deux");
    const QUuid third = add("trois");
    for (const QUuid &id : {first, second, third, second, first}) {
        m_writer->ask(id); // asked again while it waits or is written: left where it is
    }
    EXPECT_EQ(m_writer->writing(), first);
    EXPECT_THAT(m_writer->queue(), ElementsAre(second, third));

    test::writeFile(m_agents.home() + QStringLiteral("/go1"), {});
    test::spinUntil([&] { return m_writer->writing() == second && m_agents.calls().size() == 2; });
    EXPECT_TRUE(briefOf(first));
    EXPECT_FALSE(briefOf(second));
    test::writeFile(m_agents.home() + QStringLiteral("/go2"), {});
    test::writeFile(m_agents.home() + QStringLiteral("/go3"), {});
    finish();
    EXPECT_EQ(m_writer->writing(), std::nullopt);
    EXPECT_THAT(m_writer->queue(), IsEmpty());
    ASSERT_TRUE(briefOf(third));
    EXPECT_EQ(briefOf(third)->essentials.first().title, u"La 7 sort");
    EXPECT_EQ(m_writer->receipt(third)->minutes, 3);
    EXPECT_EQ(m_writer->receipt(third)->costUSD, 0.25);

    const auto calls = m_agents.calls();
    ASSERT_EQ(calls.size(), 3);
    EXPECT_TRUE(calls[2].arguments[1].contains(QStringLiteral("Title: trois")));
    EXPECT_TRUE(calls[2].arguments.contains(QStringLiteral("--allowedTools")));
}

TEST_F(BriefWriterTest, remembers_a_failure_goes_on_and_writes_when_asked_again) {
    script("[ $n -le 2 ] && exit 3\ncat <<'END'\n" + envelope(good) + "\nEND");
    const QUuid first = add("un");
    const QUuid second = add("deux");
    m_writer->ask(first);
    m_writer->ask(second);
    finish();
    EXPECT_EQ(m_agents.calls().size(), 3) << "the first was tried twice";
    EXPECT_EQ(m_writer->failed(), QSet<QUuid>{first});
    EXPECT_TRUE(m_writer->failureText(first).startsWith(u"L’IA s’est arrêtée (code 3)."));
    EXPECT_FALSE(briefOf(first));
    EXPECT_TRUE(briefOf(second));

    m_writer->ask(first);
    EXPECT_THAT(m_writer->failed(), IsEmpty());
    finish();
    EXPECT_TRUE(briefOf(first));
    EXPECT_TRUE(m_writer->failureText(first).isEmpty());
}

TEST_F(BriefWriterTest, a_reached_limit_ends_the_queue_without_a_further_call) {
    script(R"(echo '{"is_error":true,"result":"You have hit your limit"}'; exit 1)");
    const QUuid first = add("un");
    const QUuid second = add("deux");
    m_writer->ask(first);
    m_writer->ask(second);
    finish();
    EXPECT_EQ(m_agents.calls().size(), 1);
    EXPECT_EQ(m_writer->failed(), (QSet<QUuid>{first, second}));
    EXPECT_EQ(m_writer->failureText(second), m_writer->failureText(first));
    EXPECT_THAT(m_writer->queue(), IsEmpty());
}

TEST_F(BriefWriterTest, a_blank_error_is_a_failure) {
    script(R"(echo '{"is_error":true,"result":""}')");
    const QUuid id = add("un");
    m_writer->ask(id);
    finish();
    EXPECT_EQ(m_writer->failed(), QSet<QUuid>{id});
    EXPECT_EQ(m_writer->failureText(id), u"erreur de l’agent");
}

TEST_F(BriefWriterTest, what_is_missing_is_named_without_a_call) {
    const QUuid id = add("un");
    const auto failure = [&] {
        m_writer->ask(id);
        finish();
        return m_writer->failureText(id);
    };
    QFile::remove(m_agents.home() + QStringLiteral("/brief-schema.json"));
    EXPECT_EQ(failure(), u"Consigne du moteur absente de l’app.");
    QFile::remove(m_agents.home() + QStringLiteral("/brief-prompt.md"));
    EXPECT_EQ(failure(), u"Consigne du moteur absente de l’app.");
    QFile::remove(m_agents.home() + QStringLiteral("/.claude.json"));
    EXPECT_EQ(failure(), u"Claude Code n’est plus connecté.");
    QFile::remove(m_agents.home() + QStringLiteral("/.local/bin/claude"));
    EXPECT_EQ(failure(), u"Claude Code est introuvable sur ce Mac.");
    EXPECT_THAT(m_agents.calls(), IsEmpty());
}

TEST_F(BriefWriterTest, an_answer_of_another_shape_fails_and_leaves_the_topic_as_it_was) {
    const QUuid id = add("un");
    const Brief old{{{QStringLiteral("Ancien"), {}}}, {}, {}, {}, {}};
    m_store.setBrief(id, old);
    const Topic before = *m_store.topic(id);
    const QByteArray answers[] = {
        "{}",
        R"({"details":[],"unclear":[],"sources":[],"minutes":3})",
        R"({"essentials":"une phrase","details":[],"unclear":[],"sources":[],"minutes":3})",
        R"({"essentials":[{"title":"T"}],"details":[],"unclear":[],"sources":[],"minutes":3})",
        R"({"essentials":[],"details":[{"title":"T","body":"B"}],"unclear":[],"sources":[]})",
        R"({"essentials":[{"title":" ","body":"\n"}],"details":[],"unclear":[],"sources":[]})",
        "null",
        "{\"essentials\":",
    };
    for (const QByteArray &json : answers) {
        answer(json);
        m_writer->ask(id);
        finish();
        EXPECT_EQ(m_writer->failureText(id), u"réponse du moteur illisible") << json.constData();
        EXPECT_EQ(*m_store.topic(id), before) << json.constData();
    }
    // What is too much is passed over; half a character costs that character.
    answer(R"({"essentials":[{"title":"T","body":"B\ud800","more":1}],"details":[],"unclear":[],
               "sources":[],"more":{"a":[]},"code":null,"forProject":null,"minutes":null})");
    m_writer->ask(id);
    finish();
    EXPECT_EQ(briefOf(id)->essentials,
              (QList<Brief::Part>{{QStringLiteral("T"), QStringLiteral("B\uFFFD")}}));
    EXPECT_EQ(m_writer->receipt(id)->minutes, std::nullopt);
}

TEST_F(BriefWriterTest, a_withdrawn_topic_is_no_failure_and_the_others_go_on) {
    script("[ $n = 1 ] && sleep 60\ncat <<'END'\n" + envelope(good) + "\nEND");
    const QUuid first = add("un");
    const QUuid second = add("deux");
    const QUuid third = add("trois");
    m_writer->ask(first);
    m_writer->ask(second);
    m_writer->ask(third);
    m_writer->ask(QUuid::createUuid()); // gone when its turn comes
    test::spinUntil([&] { return m_agents.calls().size() == 1; });
    m_writer->withdraw(second);
    m_writer->withdraw(first);
    EXPECT_EQ(m_writer->writing(), std::nullopt);
    EXPECT_TRUE(m_writer->running()) << "one call at a time: the first still ends";
    finish();
    EXPECT_FALSE(briefOf(first));
    EXPECT_FALSE(briefOf(second));
    EXPECT_TRUE(briefOf(third));
    EXPECT_THAT(m_writer->failed(), IsEmpty());
    EXPECT_EQ(m_agents.calls().size(), 2);

    script("sleep 60");
    m_writer->ask(first);
    m_writer->ask(second);
    test::spinUntil([&] { return m_agents.calls().size() == 3; });
    m_writer->stop();
    finish();
    EXPECT_THAT(m_writer->queue(), IsEmpty());
    EXPECT_EQ(m_agents.calls().size(), 3);
}

TEST_F(BriefWriterTest, goes_while_a_call_is_under_way_and_its_process_ends) {
    script("sleep 60");
    const QUuid id = add("un");
    m_writer->ask(id);
    test::spinUntil([&] { return m_agents.calls().size() == 1; });
    m_writer.reset();
    test::spinUntil([&] { return m_agents.leftovers().isEmpty(); });
    EXPECT_FALSE(briefOf(id));
}

// An argument of more than 131,071 bytes is refused by Linux: a real child takes the largest.
TEST_F(BriefWriterTest, the_largest_prompt_still_goes_through) {
    // Each sign is one character of 7 bytes, and the call puts 3 more before each.
    const QString hostile = (u'@' + QString(3, QChar(0x0301))).repeated(2'000);
    Topic topic = test::sampleTopic(hostile);
    topic.summary = topic.why = hostile;
    topic.kind = topic.project = topic.interest = topic.note = topic.dependency =
        topic.publishedOn = topic.currentVersion = hostile;
    topic.seenText = QStringLiteral("@\u0301").repeated(9'000).toUtf8();
    topic.sources = QList<TopicSource>(
        50, {hostile, QStringLiteral("https://example.org/") + QString(470, u'@')});
    m_preferences.change(&Settings::job, hostile);
    m_preferences.change(&Settings::projectDescriptions, {{hostile, hostile}});
    const QUuid id = m_store.add({topic}).first();
    m_writer->ask(id);
    finish();
    EXPECT_EQ(m_writer->failureText(id), QString());
    EXPECT_TRUE(briefOf(id));
    EXPECT_GT(m_agents.calls().first().arguments[1].toUtf8().size(), 90'000);
}

TEST(BriefFrom, holds_lists_and_texts_and_turns_the_code_into_a_detail) {
    BriefWriter::Output output;
    const QString long1 = QString(100'000, u'x');
    output.essentials = QList<Brief::Part>(30, {QStringLiteral("a\nb"), long1});
    output.details = QList<Brief::Part>(30, {long1, QStringLiteral("un\r\n\u0007deux\n\n")});
    output.code = QStringLiteral("```js\n  a();\n\tb();\n```");
    output.forProject = QStringLiteral("\n ");
    output.unclear = QList<QString>{QStringLiteral(" ")} + QList<QString>(30, long1);
    output.sources = {
        {QStringLiteral("A"), QStringLiteral(" https://example.org/a "), QStringLiteral("x\ny")},
        {QStringLiteral("again"), QStringLiteral("https://example.org/a"), {}},
        {QStringLiteral("B"), QStringLiteral("javascript:alert(1)"), {}},
        {QStringLiteral("C"), QStringLiteral("file:///etc/passwd"), {}},
        {QStringLiteral("D"), QStringLiteral("https://example.org/") + long1, {}},
        {QStringLiteral("E"), QStringLiteral("http://"), {}},
    };
    const Brief brief = *briefFrom(output);
    EXPECT_EQ(brief.essentials.size(), 6);
    EXPECT_EQ(brief.essentials.first().title, u"a b");
    EXPECT_EQ(brief.essentials.first().body.size(), 1'500);
    ASSERT_EQ(brief.details.size(), 9);
    EXPECT_EQ(brief.details.first().body, u"un\ndeux");
    EXPECT_EQ(brief.details.last(),
              (Brief::Part{QStringLiteral("Exemple de code"), QStringLiteral("  a();\n\tb();")}));
    EXPECT_EQ(brief.project, std::nullopt);
    EXPECT_EQ(brief.unclear.size(), 6);
    EXPECT_EQ(brief.unclear.first().size(), 400);
    EXPECT_EQ(brief.sources,
              (QList<Brief::Source>{{QStringLiteral("A"), QStringLiteral("https://example.org/a"),
                                     QStringLiteral("x y")}}));

    const QString marks = QStringLiteral("e") + QString(200'000, QChar(0x0301));
    output.essentials = {{marks, marks}};
    EXPECT_LT(json::encode(*briefFrom(output)).size(), 40'000);
}

} // namespace
} // namespace vorle
