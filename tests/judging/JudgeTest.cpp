// The judge's call on a real process that answers as agents never should.

#include "judging/Judge.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QMap>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;

using Changed = QMap<QByteArray, QByteArray>;

/// A judgment's JSON, `changed` in the place of its values; an empty one leaves its key out.
QByteArray judgment(const QByteArray &id, const Changed &changed = {}) {
    Changed values{
        {"id", '"' + id + '"'},
        {"kind", R"("article")"},
        {"criteria", R"({"impact":5,"actionability":5,"novelty":5,"reliability":5,)"
                     R"("effort_minutes":30})"},
        {"relevance", "7"},
        {"urgency", R"({"level":"none"})"},
        {"tldr", R"("t")"},
        {"summary", R"("s")"},
        {"why", R"("w")"},
        {"first_step", R"("f")"},
        {"changes", "[]"},
    };
    values.insert(changed);
    QByteArrayList members;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (!it.value().isEmpty()) {
            members += '"' + it.key() + "\":" + it.value();
        }
    }
    return '{' + members.join(',') + '}';
}

QByteArray answer(const QByteArrayList &judgments) {
    return R"({"judgments":[)" + judgments.join(',') + "]}";
}

/// One answer for c1 alone.
QByteArray with(const QByteArray &key, const QByteArray &value) {
    return answer({judgment("c1", {{key, value}})});
}

class JudgeTest : public testing::Test {
protected:
    /// What comes of `text` as the agent's answer to c1 and c2: "c1=7 c2=3", or the error's text.
    std::string outcome(AgentKind kind, const QByteArray &text) {
        const bool claude = kind == AgentKind::Claude;
        // Each call looks for the first free number.
        QDir(m_agents.home() + QStringLiteral("/calls")).removeRecursively();
        test::writeFile(m_agents.home() + QStringLiteral("/answer"),
                        claude ? R"({"structured_output":)" + text + '}' : text);
        m_agents.install(kind, claude ? R"sh(cat "$HOME/answer")sh"
                                      : R"sh(cat "$HOME/answer" > "$answer")sh");
        m_agents.signIn(kind);
        EngineAgent agent(m_agents.environment(), {});
        Asker asker(agent, Resources(QStringLiteral(VORLE_RESOURCES)), 1ms);
        auto context = std::make_shared<JudgeContext>();
        context->agent = kind;
        context->today = QDate(2026, 11, 21);
        QList<JudgeCandidate> batch(2);
        batch[0].id = QStringLiteral("c1");
        batch[1].id = QStringLiteral("c2");
        try {
            m_verdicts = test::waitFor(Judge(asker).judge(context, batch, {}));
        } catch (const AgentError &error) {
            return error.text().toStdString();
        }
        QStringList parts;
        for (const char *id : {"c1", "c2"}) {
            if (const auto it = m_verdicts.byId.constFind(QLatin1StringView(id));
                it != m_verdicts.byId.cend()) {
                parts += it.key() + u'=' + QString::number(it->relevance);
            }
        }
        EXPECT_EQ(parts.size(), m_verdicts.byId.size());
        return parts.join(u' ').toStdString();
    }

    test::ScriptedAgent m_agents;
    Judge::Verdicts m_verdicts;
};

TEST_F(JudgeTest, takes_of_an_answer_what_was_asked_and_nothing_of_one_that_has_another_shape) {
    const std::string unreadable = "réponse du moteur illisible";
    const QByteArray good = judgment("c2", {{"relevance", "3"}});
    const QByteArray deep = QByteArray("[").repeated(3'000) + QByteArray("]").repeated(3'000);
    const struct {
        const char *what;
        QByteArray text;
        std::string expected;
    } cases[] = {
        {"both", answer({judgment("c1"), good}), "c1=7 c2=3"},
        {"order", answer({good, judgment("c1")}), "c1=7 c2=3"},
        {"one missing", answer({good}), "c2=3"},
        {"empty list", answer({}), ""},
        {"unknown ids",
         answer({judgment("c9"), judgment(""), judgment("C1"), judgment("c1\\u00a0"), good}),
         "c2=3"},
        {"a repeated id", answer({judgment("c1"), judgment("c1", {{"relevance", "1"}})}), "c1=7"},
        {"an unknown kind", answer({judgment("c1", {{"kind", R"("podcast")"}}), good}), "c2=3"},
        {"an unknown urgency", answer({judgment("c1", {{"urgency", R"({"level":"soon"})"}}), good}),
         "c2=3"},
        {"more keys", with("extra", R"({"a":[1,{"b":null}]})"), "c1=7"},
        {"absent optionals as null",
         with("urgency", R"({"level":"now","date":null,"reason":null})"), "c1=7"},
        {"a grade as words", with("relevance", R"("7")"), unreadable},
        {"a grade as null", with("relevance", "null"), unreadable},
        {"a grade in a list", with("relevance", "[7]"), unreadable},
        {"a grade as yes", with("relevance", "true"), unreadable},
        {"no number", with("relevance", "NaN"), unreadable},
        {"endless", with("relevance", "Infinity"), unreadable},
        {"past every number", with("relevance", "1e999"), unreadable},
        {"a huge integer", with("relevance", "123456789012345678901234567890"), "c1=10"},
        {"64 bits and one", with("relevance", "-18446744073709551617"), "c1=0"},
        {"below zero", with("relevance", "-0.5"), "c1=0"},
        {"a half", with("relevance", "7.5"), "c1=7.5"},
        {"criteria in a list", with("criteria", "[5,5,5,5,30]"), unreadable},
        {"a criterion as null",
         with("criteria", R"({"impact":null,"actionability":1,"novelty":1,"reliability":1,)"
                          R"("effort_minutes":1})"),
         unreadable},
        {"wild criteria",
         with("criteria", R"({"impact":1e300,"actionability":-1e300,"novelty":4.6,)"
                          R"("reliability":10.4,"effort_minutes":0.2})"),
         "c1=7"},
        {"changes as null", with("changes", "null"), unreadable},
        {"changes as text", with("changes", R"("faille")"), unreadable},
        {"changes in lists", with("changes", R"([["faille"]])"), unreadable},
        {"an id as number", with("id", "1"), unreadable},
        {"urgency as text", with("urgency", R"("none")"), unreadable},
        {"a date as number", with("urgency", R"({"level":"before","date":20261231})"), unreadable},
        {"a missing key", with("first_step", ""), unreadable},
        {"one bad among good", answer({good, judgment("c1", {{"tldr", "5"}})}), unreadable},
        {"no list", R"({"judgments":{}})", unreadable},
        {"a null list", R"({"judgments":null})", unreadable},
        {"lists in the list", R"({"judgments":[[]]})", unreadable},
        {"nulls in the list", R"({"judgments":[null]})", unreadable},
        {"another object", R"({"verdicts":[]})", unreadable},
        {"a bare list", '[' + good + ']', unreadable},
        {"cut short", answer({good}).chopped(2), unreadable},
        {"more behind it", answer({good}) + " {}", unreadable},
        {"a deep well", with("extra", deep), unreadable},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(outcome(AgentKind::Codex, one.text), one.expected) << one.what;
        // Inside Claude Code's envelope the answer is read and written once more.
        if (one.expected != unreadable) {
            EXPECT_EQ(outcome(AgentKind::Claude, one.text), one.expected) << one.what;
        }
    }
}

TEST_F(JudgeTest, holds_grades_and_texts_to_what_a_card_can_show) {
    const QByteArray text =
        answer({judgment("c1", {{"tldr", R"("  \ud83d fin\udc00 \u0000\u202e ")"},
                                {"why", '"' + QByteArray("é").repeated(50'000) + '"'},
                                {"criteria", R"({"impact":1e300,"actionability":-3,"novelty":4.6,)"
                                             R"("reliability":10.4,"effort_minutes":0.2})"},
                                {"changes", '[' + QByteArrayList(40, "\"faille\"").join(',') + ']'},
                                {"urgency", R"({"level":"before","date":" ","reason":"r"})"}})});
    for (const AgentKind kind : {AgentKind::Claude, AgentKind::Codex}) {
        ASSERT_EQ(outcome(kind, text), "c1=7") << json::raw(kind);
        const Judgment held = m_verdicts.byId[QStringLiteral("c1")];
        EXPECT_EQ(held.criteria, (Judgment::Criteria{10, 0, 5, 10, 1}));
        EXPECT_TRUE(held.tldr.isValidUtf16());
        EXPECT_TRUE(held.tldr.contains(QStringLiteral("fin")));
        EXPECT_EQ(held.why.size(), 1'000);
        EXPECT_EQ(held.changes.size(), 12);
        EXPECT_FALSE(held.urgency.date);
        EXPECT_EQ(held.urgency.reason, QStringLiteral("r"));
    }
}

} // namespace
} // namespace vorle
