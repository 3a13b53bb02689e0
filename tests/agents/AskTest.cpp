#include "agents/Ask.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <QTimer>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;

struct Found {
    QString title;
    std::optional<QString> about;
    static constexpr auto jsonFields() {
        return std::tuple(json::field("title", &Found::title), json::field("about", &Found::about));
    }
};

QStringList logged;
void keepLog(QtMsgType, const QMessageLogContext &, const QString &line) { logged += line; }

class AskTest : public testing::Test {
protected:
    AskTest() : m_agent(m_agents.environment(), {}), m_resources(m_agents.home()) {
        test::writeFile(m_agents.home() + QStringLiteral("/found-schema.json"), "{}");
        m_agents.signIn(AgentKind::Claude);
        logged.clear();
        m_oldHandler = qInstallMessageHandler(keepLog);
    }
    ~AskTest() override { qInstallMessageHandler(m_oldHandler); }

    /// The n-th call runs the n-th script.
    void script(const QList<QByteArray> &calls) {
        QByteArray shell = "case $n in\n";
        for (qsizetype i = 0; i < calls.size(); ++i) {
            shell += QByteArray::number(i + 1) + ") " + calls[i] + ";;\n";
        }
        m_agents.install(AgentKind::Claude, shell + "esac");
    }

    Asked<Found> ask(CancelToken cancel = {}, std::chrono::milliseconds pause = 1ms) {
        Asker asker(m_agent, m_resources, pause);
        Question question;
        question.prompt = QStringLiteral("Find");
        question.schemaName = QStringLiteral("found-schema");
        question.step = QStringLiteral("topics");
        question.agent = AgentKind::Claude;
        return test::waitFor(asker.ask<Found>(question, cancel));
    }

    AgentError errorOfAsking() {
        try {
            ask();
        } catch (const AgentError &error) {
            return error;
        }
        return AgentError::message(QStringLiteral("no error"));
    }

    test::ScriptedAgent m_agents;
    EngineAgent m_agent;
    Resources m_resources;
    QtMessageHandler m_oldHandler = nullptr;
};

constexpr auto good =
    R"sh(echo '{"structured_output":{"title":"T","about":null},"total_cost_usd":0.25}')sh";
constexpr auto misfit = R"sh(echo '{"structured_output":{"name":"T"},"total_cost_usd":0.5}')sh";
constexpr auto busy = R"sh(echo '{"is_error":true,"result":"Busy","total_cost_usd":2}'; exit 1)sh";

TEST_F(AskTest, asks_for_the_users_model_of_the_agent_it_calls_unless_the_question_names_one) {
    const auto modelOf = [&](AgentKind kind, const std::optional<QString> &named) {
        Asker asker(m_agent, m_resources, 1ms, [](AgentKind of) {
            return of == AgentKind::Claude ? std::optional(QStringLiteral("opus")) : std::nullopt;
        });
        Question question;
        question.prompt = QStringLiteral("Find");
        question.schemaName = QStringLiteral("found-schema");
        question.agent = kind;
        question.model = named;
        test::waitFor(asker.ask<Found>(question));
        const QStringList arguments = m_agents.calls().last().arguments;
        const qsizetype at = arguments.indexOf(QStringLiteral("--model"));
        return at < 0 ? QString() : arguments.value(at + 1);
    };
    script({good, good, good});
    EXPECT_EQ(modelOf(AgentKind::Claude, std::nullopt), QStringLiteral("opus"));
    EXPECT_EQ(modelOf(AgentKind::Claude, QStringLiteral("haiku")), QStringLiteral("haiku"));
    m_agents.signIn(AgentKind::Codex);
    m_agents.install(AgentKind::Codex, R"sh(echo '{"title":"T","about":null}' > "$answer")sh");
    EXPECT_EQ(modelOf(AgentKind::Codex, std::nullopt), QString());
}

TEST_F(AskTest, decodes_the_answer_and_tells_its_cost) {
    script({good});
    const auto asked = ask();
    EXPECT_EQ(asked.answer.title, QStringLiteral("T"));
    EXPECT_EQ(asked.answer.about, std::nullopt);
    EXPECT_EQ(asked.spent.costUSD, 0.25);
    EXPECT_TRUE(logged.isEmpty());
}

TEST_F(AskTest, tries_once_more_after_a_failure_that_may_pass_and_counts_both_costs) {
    script({busy, good});
    EXPECT_EQ(ask().spent.costUSD, 2.25);
    EXPECT_EQ(logged, QStringList{QStringLiteral("vorle: topics failed, trying again: "
                                                 "L’IA s’est arrêtée (code 1). Busy")});
}

TEST_F(AskTest, an_answer_of_another_shape_is_unreadable_and_paid) {
    script({misfit, good});
    EXPECT_EQ(ask().spent.costUSD, 0.75);
    EXPECT_EQ(logged, QStringList{QStringLiteral(
                          "vorle: topics failed, trying again: réponse du moteur illisible")});
}

TEST_F(AskTest, passes_a_second_failure_up_as_it_is) {
    script({busy, misfit, good});
    const AgentError error = errorOfAsking();
    EXPECT_EQ(error.text(), QStringLiteral("réponse du moteur illisible"));
    EXPECT_EQ(error.spent().costUSD, 2.5);
    EXPECT_EQ(m_agents.calls().size(), 2);
}

TEST_F(AskTest, does_not_insist_when_the_agent_refuses) {
    script({R"sh(echo '{"is_error":true,"result":"Quota"}')sh", good});
    EXPECT_EQ(errorOfAsking().text(), QStringLiteral("Quota"));
    EXPECT_EQ(m_agents.calls().size(), 1);
}

TEST_F(AskTest, a_reached_limit_costs_no_second_call) {
    script({R"sh(echo "You've hit your limit · resets 1pm (UTC)"; exit 1)sh", good});
    EXPECT_TRUE(errorOfAsking().limit());
    EXPECT_EQ(m_agents.calls().size(), 1);
}

TEST_F(AskTest, looks_whether_the_agent_is_ready_before_each_call) {
    script({"rm \"$HOME/.claude.json\"; exit 3", good});
    const AgentError error = errorOfAsking();
    EXPECT_EQ(error.text(), QStringLiteral("Claude Code n’est plus connecté."));
    EXPECT_EQ(m_agents.calls().size(), 1);
    EXPECT_EQ(errorOfAsking().kind(), AgentError::Case::SignedOut);
    EXPECT_EQ(m_agents.calls().size(), 1);
}

TEST_F(AskTest, a_stop_ends_the_pause_before_the_second_call) {
    script({busy, good});
    CancelSource source;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (!logged.isEmpty()) {
            source.cancel();
        }
    });
    watch.start(5ms);
    EXPECT_THROW(ask(source.token(), 60s), Cancelled);
    EXPECT_EQ(m_agents.calls().size(), 1);
}

TEST_F(AskTest, a_missing_instruction_or_schema_is_told_without_a_call) {
    const QString missing = QStringLiteral("Consigne du moteur absente de l’app.");
    script({good});
    QFile::remove(m_agents.home() + QStringLiteral("/found-schema.json"));
    EXPECT_EQ(errorOfAsking().text(), missing);
    EXPECT_TRUE(m_agents.calls().isEmpty());
    try {
        loadPrompt(m_resources, QStringLiteral("found-prompt"));
        ADD_FAILURE() << "loaded";
    } catch (const AgentError &error) {
        EXPECT_EQ(error.text(), missing);
    }
}

TEST_F(AskTest, fills_every_placeholder_literally_and_in_order) {
    const QString text = QStringLiteral("@TODAY: @ITEMS (@TODAY) @TODAYS");
    EXPECT_EQ(fillTemplate(text, {{QStringLiteral("@TODAY"), QStringLiteral("\\1 $&")},
                                  {QStringLiteral("@ITEMS"), QStringLiteral("@TODAY @ITEMS")}}),
              QStringLiteral("\\1 $&: @TODAY @ITEMS (\\1 $&) \\1 $&S"));
}

} // namespace
} // namespace vorle
