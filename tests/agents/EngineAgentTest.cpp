#include "agents/EngineAgent.h"
#include "agents/StructuredOutput.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <system_error>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using Case = AgentError::Case;

QStringList words(const char *text) { return QString::fromUtf8(text).split(u' '); }

class EngineAgentTest : public testing::Test {
protected:
    AgentResult run(AgentKind kind, AgentRequest request = {}, AgentTimeouts timeouts = {}) {
        if (request.prompt.isEmpty()) {
            request.prompt = QStringLiteral("Find");
        }
        if (request.schema.isEmpty()) {
            request.schema = QStringLiteral(R"({"type":"object"})");
        }
        EngineAgent agent(m_agents.environment(), {}, timeouts);
        return test::waitFor(agent.run(request, kind));
    }

    AgentError errorOf(AgentKind kind, AgentRequest request = {}, AgentTimeouts timeouts = {}) {
        try {
            run(kind, request, timeouts);
        } catch (const AgentError &error) {
            EXPECT_STREQ(error.what(), error.text().toUtf8().constData());
            return error;
        }
        return AgentError::message(QStringLiteral("no error"));
    }

    void TearDown() override { EXPECT_TRUE(m_agents.leftovers().isEmpty()); }

    test::ScriptedAgent m_agents;
};

constexpr auto claudeAnswers = R"sh(echo '{"structured_output":{"a":1},"total_cost_usd":0.5}')sh";
constexpr auto codexAnswers = R"sh(cat > "$call/input"
for argument in "$@"; do case $argument in *vorle-schema-*) cp "$argument" "$call/schema";; esac; done
echo '{"a": 1}' > "$answer")sh";

TEST_F(EngineAgentTest, calls_claude_with_the_prompt_as_an_argument) {
    m_agents.install(AgentKind::Claude, QByteArray("cat > \"$call/input\"\n") + claudeAnswers);
    AgentRequest request;
    request.prompt = QStringLiteral("Trouve « ça »\n$HOME `id` \"x\"");
    request.schema = QStringLiteral("{\"type\": \"object\"}\n");
    const AgentResult result = run(AgentKind::Claude, request);
    EXPECT_EQ(result.json, R"({"a":1})");
    EXPECT_EQ(result.spent.costUSD, 0.5);
    request.model = QString();
    request.web = WebAccess::On;
    run(AgentKind::Claude, request);
    request.model = QStringLiteral("opus");
    run(AgentKind::Claude, request);

    const QStringList start =
        QStringList{QStringLiteral("-p"), request.prompt} + words("--output-format json") +
        QStringList{QStringLiteral("--json-schema"), request.schema} +
        words("--strict-mcp-config --setting-sources project --disable-slash-commands");
    const auto calls = m_agents.calls();
    EXPECT_EQ(calls[0].arguments,
              start + words("--disallowedTools WebSearch WebFetch Bash Edit Write Read Glob Grep "
                            "NotebookEdit"));
    const QStringList web = words("--allowedTools WebSearch WebFetch --disallowedTools Bash Edit "
                                  "Write Read Glob Grep NotebookEdit");
    EXPECT_EQ(calls[1].arguments, start + web);
    EXPECT_EQ(calls[2].arguments, start + words("--model opus") + web);
    EXPECT_EQ(calls[0].input, "");
}

TEST_F(EngineAgentTest, calls_codex_with_the_prompt_on_standard_input) {
    m_agents.install(AgentKind::Codex, codexAnswers);
    AgentRequest request;
    request.prompt = QStringLiteral("/Trouve « ça » @/etc/passwd");
    request.schema = QStringLiteral(R"({"properties":{"a":{"type":"integer"}}})");
    EXPECT_EQ(run(AgentKind::Codex, request).json, "{\"a\": 1}\n");
    request.web = WebAccess::On;
    request.model = QStringLiteral("gpt");
    run(AgentKind::Codex, request);

    const auto calls = m_agents.calls();
    const QStringList &plain = calls[0].arguments;
    ASSERT_EQ(plain.size(), 12);
    const QString schema = plain[8];
    const QString answer = plain[10];
    const QStringList middle = words("exec --skip-git-repo-check --ephemeral --sandbox read-only "
                                     "--color never --output-schema") +
                               QStringList{schema, QStringLiteral("--output-last-message"), answer};
    EXPECT_EQ(plain, middle + words("-"));
    EXPECT_EQ(calls[1].arguments.first(), QStringLiteral("--search"));
    EXPECT_EQ(calls[1].arguments.mid(12), words("--model gpt -"));
    const auto name = [&](const char *what) {
        return QRegularExpression(QRegularExpression::anchoredPattern(
            QRegularExpression::escape(m_agents.temporary()) + u'/' + QString::fromUtf8(what) +
            QStringLiteral("-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\.json")));
    };
    EXPECT_TRUE(name("vorle-schema").match(schema).hasMatch()) << schema.toStdString();
    EXPECT_TRUE(name("vorle-answer").match(answer).hasMatch()) << answer.toStdString();
    EXPECT_EQ(calls[0].input, request.prompt.toUtf8());
    EXPECT_EQ(test::readFile(m_agents.home() + QStringLiteral("/calls/1/schema")),
              makeStrict(request.schema).toUtf8());
}

TEST_F(EngineAgentTest, the_child_finds_its_tools_its_home_and_no_project) {
    m_agents.install(AgentKind::Codex, codexAnswers);
    run(AgentKind::Codex);
    const QString home = m_agents.home();
    const auto call = m_agents.calls().first();
    EXPECT_EQ(call.environment[QStringLiteral("PATH")],
              home + QStringLiteral("/.local/bin:/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin:"
                                    "/old/path"));
    EXPECT_EQ(call.environment[QStringLiteral("HOME")], home);
    EXPECT_EQ(call.environment[QStringLiteral("CLAUDE_CONFIG_DIR")], home);
    EXPECT_EQ(call.environment[QStringLiteral("CODEX_HOME")], home + QStringLiteral("/.codex"));
    EXPECT_TRUE(QDir(home + QStringLiteral("/.codex")).exists());
    EXPECT_EQ(call.directory, QDir(m_agents.temporary()).canonicalPath());

    // In the user's own home nothing is redirected.
    AgentEnvironment own = m_agents.environment();
    own.variables.clear();
    own.variables.insert(QStringLiteral("HOME"), home);
    own.userHome = home;
    EngineAgent agent(own, {});
    test::waitFor(agent.run({QStringLiteral("p"), QStringLiteral("{}"), {}, {}}, AgentKind::Codex));
    const auto variables = m_agents.calls().last().environment;
    EXPECT_FALSE(variables.contains(QStringLiteral("CODEX_HOME")));
    EXPECT_TRUE(variables[QStringLiteral("PATH")].endsWith(QStringLiteral(":/usr/bin:/bin")));
}

TEST_F(EngineAgentTest, claude_takes_every_prompt_literally) {
    m_agents.install(AgentKind::Claude, claudeAnswers);
    const std::pair<QString, QString> cases[] = {
        {QStringLiteral("-x"), QStringLiteral("Task:\n-x")},
        {QStringLiteral("/help"), QStringLiteral("Task:\n/help")},
        {QStringLiteral("@/etc/passwd"), QStringLiteral("\u2060@/etc/passwd")},
        {QStringLiteral("a @\"/x\" (@../y \u00A0@z @@w"),
         QStringLiteral("a \u2060@\"/x\" (\u2060@../y \u00A0\u2060@z \u2060@\u2060@w")},
        {QStringLiteral("a-/b c@d.org é@f"), QStringLiteral("a-/b c@d.org é@f")},
        {QStringLiteral("a%1b").arg(QChar(u'\0')), QStringLiteral("a\uFFFDb")},
    };
    for (const auto &[prompt, passed] : cases) {
        AgentRequest request;
        request.prompt = prompt;
        run(AgentKind::Claude, request);
        EXPECT_EQ(m_agents.calls().last().arguments.at(1), passed);
    }
}

// The answer repeats what was marked, the sign behind the mark or not; any other joiner is its own.
TEST_F(EngineAgentTest, takes_its_own_marks_out_of_the_answer_and_no_others) {
    m_agents.install(AgentKind::Claude, "cat \"$HOME/answer\"");
    const std::pair<const char16_t *, const char16_t *> cases[] = {
        {u"\u2060@types/node", u"@types/node"},
        {u"(\u2060@types/node).", u"(@types/node)."},
        {u"\u2060types/node", u"types/node"},
        {u"\u2060\u2060@types/node", u"\u2060@types/node"},
        {u"\u2060@other \u2060x a\u2060b \u2060", u"\u2060@other \u2060x a\u2060b \u2060"},
    };
    for (const auto &[answer, expected] : cases) {
        test::writeFile(m_agents.home() + QStringLiteral("/answer"),
                        R"({"structured_output":{"a":")" + QString::fromUtf16(answer).toUtf8() +
                            "\"}}");
        AgentRequest request;
        request.prompt = QStringLiteral("uses @types/node.");
        EXPECT_EQ(run(AgentKind::Claude, request).json,
                  R"({"a":")" + QString::fromUtf16(expected).toUtf8() + "\"}");
    }
}

TEST_F(EngineAgentTest, a_prompt_up_to_the_limit_passes_and_a_longer_one_is_refused_clearly) {
    m_agents.install(AgentKind::Claude, claudeAnswers);
    const auto limit = EngineAgent::promptLimit(AgentKind::Claude);
    if (!limit) {
        GTEST_SKIP() << "no such limit on this system";
    }
    EXPECT_EQ(limit, 131'071);
    EXPECT_EQ(EngineAgent::promptLimit(AgentKind::Codex), std::nullopt);
    AgentRequest request;
    request.prompt = QString(*limit - 2, u'a') + u'é';
    run(AgentKind::Claude, request);
    EXPECT_EQ(m_agents.calls().last().arguments.at(1), request.prompt);
    request.prompt += u'a';
    const AgentError error = errorOf(AgentKind::Claude, request);
    EXPECT_EQ(error.kind(), Case::Message);
    EXPECT_FALSE(error.mayRetry());
    EXPECT_EQ(m_agents.calls().size(), 1);
}

TEST_F(EngineAgentTest, every_way_to_fail_has_its_error) {
    struct Failure {
        AgentKind kind;
        QByteArray shell;
        std::chrono::milliseconds timeout;
        Case expected;
        QString text;
    };
    const QString unreadable = QStringLiteral("réponse du moteur illisible");
    const Failure failures[] = {
        {AgentKind::Claude, "echo oops >&2; exit 3", 60s, Case::Stopped,
         QStringLiteral("L’IA s’est arrêtée (code 3). oops\n")},
        {AgentKind::Codex, "printf '\\033[31mkey=sk-proj-0123456789abcdef\\033[0m\\a' >&2; exit 3",
         60s, Case::Stopped, QStringLiteral("L’IA s’est arrêtée (code 3). key=[clé masquée]")},
        {AgentKind::Claude, "kill -9 $$", 60s, Case::Stopped,
         QStringLiteral("L’IA s’est arrêtée (code 9). ")},
        {AgentKind::Claude, "exit 143", 60s, Case::Stopped,
         QStringLiteral("L’IA s’est arrêtée (code 143). ")},
        {AgentKind::Claude, "exec sleep 60", 300ms, Case::TimedOut,
         QStringLiteral("Claude Code n’a pas répondu à temps.")},
        {AgentKind::Codex, "trap '' TERM; sleep 60 & wait", 300ms, Case::TimedOut,
         QStringLiteral("Codex n’a pas répondu à temps.")},
        {AgentKind::Claude, "trap 'exit 143' TERM; sleep 60 & wait", 300ms, Case::TimedOut,
         QStringLiteral("Claude Code n’a pas répondu à temps.")},
        {AgentKind::Claude, "trap 'exit 2' TERM; sleep 60 & wait", 300ms, Case::Stopped,
         QStringLiteral("L’IA s’est arrêtée (code 2). ")},
        {AgentKind::Claude, "echo >&2; echo '{\"is_error\":true,\"result\":\"Busy %1\"}'; exit 1",
         60s, Case::Stopped, QStringLiteral("L’IA s’est arrêtée (code 1). Busy %1")},
        {AgentKind::Claude, "echo '{\"errors\":[\"no fit\",\"twice\"]}'; exit 1", 60s,
         Case::Stopped, QStringLiteral("L’IA s’est arrêtée (code 1). no fit; twice")},
        {AgentKind::Claude, "echo '{\"is_error\":true,\"result\":\"Refusé\"}'", 60s, Case::Message,
         QStringLiteral("Refusé")},
        {AgentKind::Claude, "echo Nothing to say.", 60s, Case::Message, unreadable},
        {AgentKind::Claude, ":", 60s, Case::Message, unreadable},
        {AgentKind::Claude, "echo '{\"structured_output\":{\"a\":'", 60s, Case::Message,
         unreadable},
        {AgentKind::Claude, "head -c 200000000 /dev/zero", 60s, Case::Message, unreadable},
        {AgentKind::Claude, "exec yes", 60s, Case::Message, unreadable},
        {AgentKind::Codex, ":", 60s, Case::Message, unreadable},
        {AgentKind::Codex, "echo prose > \"$answer\"", 60s, Case::Message, unreadable},
        {AgentKind::Codex, "rm \"$answer\"", 60s, Case::Message, unreadable},
        {AgentKind::Codex, "rm \"$answer\"; mkfifo \"$answer\"", 60s, Case::Message, unreadable},
        {AgentKind::Codex, "head -c 20000000 /dev/zero > \"$answer\"", 60s, Case::Message,
         unreadable},
    };
    for (const Failure &failure : failures) {
        m_agents.install(failure.kind, failure.shell);
        const AgentError error =
            errorOf(failure.kind, {}, {.withWeb = 1ms, .withoutWeb = failure.timeout});
        EXPECT_EQ(error.kind(), failure.expected) << failure.shell.toStdString();
        EXPECT_EQ(error.text(), failure.text) << failure.shell.toStdString();
        EXPECT_EQ(error.mayRetry(), error.kind() != Case::Message || error.text() == unreadable);
    }
}

// Wherever an agent says it: in its JSON, in the place of it, or behind all that it printed.
TEST_F(EngineAgentTest, tells_a_reached_limit_from_every_other_failure) {
    const QString claudeSays = QStringLiteral("You've hit your limit · resets 1pm (Europe/Lisbon)");
    const QString codexSays =
        QStringLiteral("You've hit your usage limit. Try again in 2 days 17 hours 14 minutes.");
    const QByteArray line = claudeSays.toUtf8();
    const QByteArray json = R"({"is_error":true,"result":")" + line + R"("})";
    const QByteArray echo = R"sh(cat >&2; printf '\n\nERROR: )sh";
    const struct {
        AgentKind kind;
        QByteArray shell;
        QString limit; // "" for none
        QString text;  // "" for the agent's own words behind its status
    } cases[] = {
        {AgentKind::Claude, "cat <<'END'\n" + json + "\nEND\nexit 1", claudeSays, {}},
        {AgentKind::Claude, "cat <<'END'\n" + json + "\nEND", claudeSays, claudeSays},
        {AgentKind::Claude, "cat <<'END'\n" + line + "\nEND\nexit 1", claudeSays,
         QStringLiteral("L’IA s’est arrêtée (code 1). ") + claudeSays + u'\n'},
        {AgentKind::Claude, "cat >&2 <<'END'\n" + line + "\nEND\nexit 1", claudeSays, {}},
        {AgentKind::Claude,
         R"(echo '{"is_error":true,"result":"API Error: Rate limit reached"}')",
         QStringLiteral("API Error: Rate limit reached"),
         {}},
        {AgentKind::Codex,
         "cat >&2 <<'END'\nERROR: " + codexSays.toUtf8() + "\nEND\nexit 1",
         QStringLiteral("ERROR: ") + codexSays,
         {}},
        {AgentKind::Codex, "cat >&2 <<'END'\nERROR: " + codexSays.toUtf8() + "\nEND",
         QStringLiteral("ERROR: ") + codexSays, QStringLiteral("réponse du moteur illisible")},
        // A page may hold the sentence: what is asked comes back on Codex's standard error, and
        // what is answered is no failure.
        {AgentKind::Codex, "cat >&2; exit 1", {}, {}},
        {AgentKind::Codex, echo + "connection lost' >&2; exit 1", {}, {}},
        {AgentKind::Claude, "echo >&2 'You have hit your limit'; seq 5 >&2; exit 1", {}, {}},
    };
    AgentRequest request;
    request.prompt = QStringLiteral("Judge this page:\n") + codexSays;
    for (const auto &one : cases) {
        m_agents.install(one.kind, one.shell);
        const AgentError error = errorOf(one.kind, request);
        EXPECT_EQ(error.limit() ? error.limit()->words : QString(), one.limit)
            << one.shell.toStdString();
        EXPECT_EQ(error.mayRetry(), one.limit.isEmpty()) << one.shell.toStdString();
        if (!one.text.isEmpty()) {
            EXPECT_EQ(error.text(), one.text);
        }
    }
    m_agents.install(AgentKind::Claude,
                     R"(echo '{"structured_output":{"a":"You have hit your limit"}}')");
    EXPECT_NO_THROW(run(AgentKind::Claude));
}

TEST_F(EngineAgentTest, counts_the_tokens_that_an_agent_tells) {
    m_agents.install(AgentKind::Claude,
                     R"sh(echo '{"structured_output":{},"usage":{"input_tokens":4,)sh"
                     R"sh("cache_creation_input_tokens":1000,"cache_read_input_tokens":200,)sh"
                     R"sh("output_tokens":30,"service_tier":"standard"}}')sh");
    EXPECT_EQ(run(AgentKind::Claude).spent.tokens, 1234);
    const std::pair<const char *, std::optional<qint64>> told[] = {
        {"tokens used: 12,345", 12'345},
        {"tokens used\\n41200", 41'200},
        {"tokens used: 1\\nthen more", std::nullopt},
        {"tokens used: 99999999999999", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto &[words, tokens] : told) {
        m_agents.install(AgentKind::Codex,
                         QByteArray("echo '{}' > \"$answer\"; printf '") + words + "\\n' >&2");
        EXPECT_EQ(run(AgentKind::Codex).spent.tokens, tokens) << words;
    }
}

TEST_F(EngineAgentTest, keeps_the_last_300_characters_a_reader_sees_of_the_errors) {
    m_agents.install(AgentKind::Codex, "cat \"$HOME/err\" >&2; exit 1");
    const QString accented = QStringLiteral("e\u0301"); // one character, two code points
    test::writeFile(m_agents.home() + QStringLiteral("/err"),
                    (QString(100'000, u'x') + accented.repeated(300)).toUtf8());
    EXPECT_EQ(errorOf(AgentKind::Codex).text(),
              QStringLiteral("L’IA s’est arrêtée (code 1). ") + accented.repeated(300));
}

TEST_F(EngineAgentTest, an_answer_counts_however_much_was_told_beside_it) {
    m_agents.install(AgentKind::Claude,
                     QByteArray("yes warning | head -c 40000000 >&2\n") + claudeAnswers);
    EXPECT_EQ(run(AgentKind::Claude).json, R"({"a":1})");
}

TEST_F(EngineAgentTest, the_cut_of_the_errors_never_lays_half_a_key_bare) {
    m_agents.install(AgentKind::Codex, "cat \"$HOME/err\" >&2; exit 1");
    test::writeFile(m_agents.home() + QStringLiteral("/err"),
                    "sk-proj-" + QByteArray("a1").repeated(10) + QByteArray(290, ' ') + "fin");
    EXPECT_FALSE(errorOf(AgentKind::Codex).text().contains(u"a1"));
}

TEST_F(EngineAgentTest, what_is_missing_is_told_before_anything_is_written) {
    EXPECT_EQ(errorOf(AgentKind::Codex).text(),
              QStringLiteral("Codex est introuvable sur ce Mac."));
    EngineAgent agent(m_agents.environment(), {});
    const auto checked = [&](AgentKind kind) {
        try {
            agent.check(kind);
        } catch (const AgentError &error) {
            return error.text();
        }
        return QString();
    };
    EXPECT_EQ(checked(AgentKind::Claude),
              QStringLiteral("Claude Code est introuvable sur ce Mac."));
    m_agents.install(AgentKind::Claude, claudeAnswers);
    EXPECT_EQ(checked(AgentKind::Claude), QStringLiteral("Claude Code n’est plus connecté."));
    m_agents.signIn(AgentKind::Claude);
    EXPECT_EQ(checked(AgentKind::Claude), QString());

    // An executable that is none, then a temporary directory that is gone.
    const QString path = *agent.locator().locate(AgentKind::Claude);
    test::writeFile(path, QByteArray("\x7f"
                                     "ELF",
                                     4));
    EXPECT_THROW(run(AgentKind::Claude), std::system_error);
    EXPECT_TRUE(m_agents.leftovers().isEmpty());
    m_agents.install(AgentKind::Claude, claudeAnswers);
    QDir(m_agents.temporary()).removeRecursively();
    EXPECT_THROW(run(AgentKind::Claude), std::system_error);
}

TEST_F(EngineAgentTest, overlapping_calls_keep_apart) {
    m_agents.install(AgentKind::Codex,
                     R"sh(prompt=$(cat); sleep 0.1; echo "[$prompt]" > "$answer")sh");
    EngineAgent agent(m_agents.environment(), {});
    QList<QByteArray> answers(6);
    const auto one = [&](qsizetype index) -> Task<> {
        answers[index] = (co_await agent.run({QString::number(index), QStringLiteral("{}"), {}, {}},
                                             AgentKind::Codex))
                             .json;
    };
    test::waitFor(forEachBounded(6, 6, one));
    for (qsizetype i = 0; i < 6; ++i) {
        EXPECT_EQ(answers[i], '[' + QByteArray::number(i) + "]\n");
    }
}

} // namespace
} // namespace vorle
