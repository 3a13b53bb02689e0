#include "judging/JudgeBench.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <gmock/gmock.h>

#include <cmath>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

const Resources &resources() {
    static const Resources all(QStringLiteral(VORLE_RESOURCES));
    return all;
}

/// Items "1", "2", … of which those of `labelled` carry a label.
Bench bench(int items, const QList<int> &labelled) {
    Bench out;
    for (int i = 1; i <= items; ++i) {
        BenchItem item;
        item.id = QString::number(i);
        item.title = QStringLiteral("Sujet %1").arg(i);
        item.origin = QStringLiteral("une lettre");
        item.readLevel = ReadLevel::Full;
        item.content = "texte";
        item.collectedAt =
            *parseIso8601("2026-10-0" + QByteArray::number(1 + i % 7) + "T12:00:00Z");
        out.items += item;
        if (labelled.contains(i)) {
            out.labels[item.id] = {5, {}, {}};
        }
    }
    return out;
}

QStringList idsOf(const QList<BenchItem> &items) {
    QStringList ids;
    for (const BenchItem &item : items) {
        ids += item.id;
    }
    return ids;
}

BenchVerdict verdict(std::optional<double> label, std::optional<double> judged) {
    BenchVerdict one;
    if (label) {
        one.label = BenchLabel{*label, {}, {}};
    }
    if (judged) {
        one.judgment.emplace().relevance = *judged;
    }
    return one;
}

QList<BenchVerdict> verdicts(const QList<double> &labels, const QList<double> &judged) {
    QList<BenchVerdict> all;
    for (qsizetype i = 0; i < labels.size(); ++i) {
        all += verdict(labels[i], judged[i]);
    }
    return all;
}

TEST(BenchPreview, takes_ten_labelled_items_of_the_first_fifteen) {
    QList<int> all;
    for (int i = 1; i <= 16; ++i) {
        all += i;
    }
    EXPECT_EQ(idsOf(previewOf(bench(16, all)).items), idsOf(bench(10, {}).items));
    EXPECT_EQ(idsOf(previewOf(bench(16, {2, 15, 16})).items),
              (QStringList{QStringLiteral("2"), QStringLiteral("15")}));
    EXPECT_THAT(previewOf(bench(20, {16, 17})).items, IsEmpty());
    EXPECT_THAT(previewOf(bench(20, {})).items, IsEmpty());
    EXPECT_THAT(previewOf({}).items, IsEmpty());
}

TEST(BenchFigures, measure_how_far_the_judge_is_from_the_labels) {
    // Ranks 1 2 3 4 5 and 1 2 3.5 5 3.5: 8 / √(10 × 9.5).
    const BenchFigures ties = benchFigures(verdicts({1, 2, 3, 4, 5}, {5, 6, 7, 8, 7}));
    EXPECT_EQ(ties.compared, 5);
    EXPECT_DOUBLE_EQ(*ties.meanAbsoluteError, 3.6);
    EXPECT_DOUBLE_EQ(*ties.withinOne, 0);
    EXPECT_DOUBLE_EQ(*ties.rankCorrelation, 8 / std::sqrt(95.0));
    EXPECT_THAT(ties.worst, ElementsAre(0, 1, 2, 3, 4));

    const BenchFigures turned = benchFigures(verdicts({0, 3, 9, 10}, {8, 7.5, 2, 1}));
    EXPECT_DOUBLE_EQ(*turned.rankCorrelation, -1);
    EXPECT_THAT(turned.worst, ElementsAre(3, 0, 2, 1));

    const BenchFigures near = benchFigures(verdicts({7, 5, 0, 9.5}, {7, 6, 1.5, 8.5}));
    EXPECT_DOUBLE_EQ(*near.withinOne, 0.75);
    EXPECT_THAT(near.worst, ElementsAre(2, 1, 3)) << "the exact one is no gap";
}

TEST(BenchFigures, leave_out_what_cannot_be_measured) {
    for (const auto &all :
         {verdicts({5, 5, 5}, {1, 2, 3}), verdicts({1, 2, 3}, {7, 7, 7}), verdicts({4}, {5})}) {
        EXPECT_EQ(benchFigures(all).rankCorrelation, std::nullopt) << "one side is constant";
    }
    const BenchFigures none = benchFigures({});
    EXPECT_EQ(none.meanAbsoluteError, std::nullopt);
    EXPECT_EQ(none.withinOne, std::nullopt);

    const BenchFigures some = benchFigures(
        {verdict(9, {}), verdict({}, 9), verdict({}, {}), verdict(4, 6), verdict(9, 9)});
    EXPECT_EQ(some.compared, 2);
    EXPECT_EQ(some.unanswered, 2);
    EXPECT_DOUBLE_EQ(*some.meanAbsoluteError, 1);
    EXPECT_THAT(some.worst, ElementsAre(3));
    QList<double> labels(9, 0);
    EXPECT_EQ(benchFigures(verdicts(labels, {1, 2, 3, 4, 5, 6, 7, 8, 9})).worst.size(), 5);
}

TEST(BenchSamples, cover_every_kind_and_reading_and_carry_a_label_each) {
    const QList<Bench> benches = loadBenches(resources());
    EXPECT_EQ(previewOf(benches.first()).items.size(), 10);
    QSet<QString> ids;
    QSet<int> kinds;
    QSet<int> levels;
    qsizetype items = 0;
    for (const Bench &one : benches) {
        EXPECT_EQ(one.labels.size(), one.items.size());
        for (const BenchItem &item : one.items) {
            ++items;
            ids.insert(item.id);
            kinds.insert(int(item.kind.value_or(ItemKind::Article)));
            levels.insert(int(item.readLevel));
            EXPECT_EQ(item.content.isEmpty(), item.readLevel == ReadLevel::None)
                << item.id.toStdString();
            ASSERT_TRUE(one.labels.contains(item.id)) << item.id.toStdString();
            const BenchLabel &label = one.labels[item.id];
            EXPECT_TRUE(label.score >= 0 && label.score <= 10 && !label.text.isEmpty());
        }
    }
    EXPECT_GE(benches.size(), 3);
    EXPECT_EQ(ids.size(), items);
    EXPECT_EQ(kinds.size(), 8);
    EXPECT_EQ(levels.size(), 4);

    const Bench &any = benches.first();
    EXPECT_EQ(json::decode<Bench>(json::encode(any, json::Style::Pretty)), any);
    test::ScriptedAgent empty;
    EXPECT_THROW(loadBenches(Resources(empty.home())), AgentError);
}

class JudgeBenchTest : public testing::Test {
protected:
    JudgeBenchTest() {
        m_agents.signIn(AgentKind::Claude);
        m_agents.answerBy(R"({"candidates":{},"judge":"ok"})");
    }

    /// Claude Code's stand-in, behind what `before` does first.
    void install(const QByteArray &before = {}) {
        m_agents.install(AgentKind::Claude, before + '\n' + test::ScriptedAgent::byTable);
    }

    JudgeBench::Outcome judge(Bench one, CancelToken cancel = {}) {
        m_progress.clear();
        return test::waitFor(JudgeBench(m_asker).judge(
            std::move(one), [this](qsizetype done) { m_progress += done; }, cancel));
    }

    test::ScriptedAgent m_agents;
    EngineAgent m_agent{m_agents.environment(), {}};
    Asker m_asker{m_agent, resources(), 1ms};
    QList<qsizetype> m_progress;
};

TEST_F(JudgeBenchTest, judges_in_the_batches_of_a_run_for_the_profile_of_the_bench) {
    install();
    Bench one = bench(17, {1, 17});
    one.items[0].origin = QStringLiteral("https://lettre.example/1");
    one.items[1].kind = ItemKind::Video;
    one.items[2].note = QStringLiteral("à revoir");
    one.profile.job = QStringLiteral("Relieuse");
    one.profile.language = QStringLiteral("French");
    one.profile.projects = {{QStringLiteral("Atelier"), QStringLiteral("reliure")}};
    one.profile.interests = {{QStringLiteral("Papier"), 4}};
    one.profile.reflexes = {QStringLiteral("They love glue.")};
    one.profile.tools = {QStringLiteral("Presse")};
    const auto outcome = judge(one);
    EXPECT_FALSE(outcome.failure);
    ASSERT_EQ(outcome.verdicts.size(), 17);
    for (qsizetype i = 0; i < 17; ++i) {
        EXPECT_EQ(outcome.verdicts[i].item, one.items[i]);
        EXPECT_TRUE(outcome.verdicts[i].judgment);
    }
    EXPECT_EQ(outcome.verdicts[16].gap(), 2);
    EXPECT_EQ(outcome.verdicts[1].gap(), std::nullopt);
    EXPECT_EQ(outcome.costUSD, 0.75) << "three calls";
    EXPECT_EQ(m_progress.last(), 17);

    const QString sent = m_agents.prompts();
    for (const char *line :
         {"Today is October 7, 2026.", "Job: Relieuse\n", "- Atelier: reliure\n",
          "- Papier (weight 4)\n", "- Presse", "- They love glue.\n",
          "### id: 1\nTitle: Sujet 1\nLink: https://lettre.example/1\nKind (guessed): article\n",
          "### id: 2\nTitle: Sujet 2\nKind (guessed): video\nRead level: full\nContent:\n",
          "Their note when saving it: à revoir\n"}) {
        EXPECT_TRUE(sent.contains(QString::fromUtf8(line))) << line;
    }
}

TEST_F(JudgeBenchTest, calls_nobody_without_items) {
    install();
    const auto outcome = judge(previewOf(bench(20, {})));
    EXPECT_THAT(outcome.verdicts, IsEmpty());
    EXPECT_FALSE(outcome.failure);
    EXPECT_THAT(m_agents.calls(), IsEmpty());
}

TEST_F(JudgeBenchTest, keeps_what_was_judged_before_a_failure) {
    install("[ $n -le 2 ] || exit 3");
    const auto outcome = judge(bench(40, {}));
    ASSERT_TRUE(outcome.failure);
    EXPECT_THROW(std::rethrow_exception(outcome.failure), AgentError);
    ASSERT_EQ(outcome.verdicts.size(), 40);
    EXPECT_EQ(benchFigures(outcome.verdicts).unanswered, 24);
    EXPECT_EQ(outcome.costUSD, 0.5);
    EXPECT_LE(m_agents.calls().size(), 6) << "no further batch leaves, each is tried twice";
}

TEST_F(JudgeBenchTest, ends_at_once_when_it_is_stopped) {
    install("sleep 600");
    CancelSource source;
    const Task<> stopping = [](test::ScriptedAgent &agents, CancelSource &stop) -> Task<> {
        while (agents.calls().size() < 2) {
            co_await sleepFor(5ms);
        }
        stop.cancel();
    }(m_agents, source);
    EXPECT_THROW(judge(bench(40, {}), source.token()), Cancelled);
    EXPECT_EQ(m_agents.calls().size(), 2);
}

} // namespace
} // namespace vorle
