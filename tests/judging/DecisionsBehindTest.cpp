#include "judging/Learning.h"
#include "tests/judging/DecidedTopics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

namespace vorle {
namespace {

using enum TopicStatus;
using test::october;

/// The whole numbers in a text, in their order.
QList<int> numbersIn(const QString &text) {
    QList<int> numbers;
    QString digits;
    for (const QChar c : text + u' ') {
        if (c.isDigit()) {
            digits += c;
        } else if (!digits.isEmpty()) {
            numbers += digits.toInt();
            digits.clear();
        }
    }
    return numbers;
}

/// Decisions by a person who leans one way, as likely as not made since a moment.
class AnyDecisions {
public:
    explicit AnyDecisions(std::mt19937 &random) : m_random(random) {
        settings.projects = {{QStringLiteral("Potager"), QString()}};
        m_leaning = int(m_random() % 100);
        for (int i = 0; i < 40; ++i) {
            topics += std::make_shared<const Topic>(decision());
        }
        settings.reflexesSince =
            chance(50) ? std::optional(october.addSecs(100'000)) : std::nullopt;
    }

    QList<TopicPtr> topics;
    Settings settings;

private:
    bool chance(int percent) { return int(m_random() % 100) < percent; }
    QDateTime someday() { return october.addSecs(int(m_random() % 1'000'000)); }

    Topic decision() {
        const char *kinds[] = {"video", "security", "article", "billet"};
        const TopicStatus statuses[] = {Inbox, Program, Reserve, Dismissed, Done};
        Topic topic = test::decision(chance(m_leaning) ? Dismissed : statuses[m_random() % 5],
                                     kinds[m_random() % 4]);
        topic.triagedAt = someday();
        topic.minutes = chance(20) ? 90 : 10;
        topic.postponedCount = chance(60) ? 1 : 0;
        if (chance(40)) {
            topic.dependency = QStringLiteral("zod");
            topic.status = chance(m_leaning) ? Program : topic.status;
        }
        topic.project = chance(30) ? std::optional(QStringLiteral("Potager")) : std::nullopt;
        topic.readLevel = chance(90) ? ReadLevel::Full : ReadLevel::None;
        if (chance(40)) {
            topic.correction = Correction{};
            topic.correction->score = chance(80) ? 9 : 1;
            topic.correction->at = someday();
        }
        return topic;
    }

    std::mt19937 &m_random;
    int m_leaning = 0;
};

void expectTold(const Reflex &reflex, const QList<DecisionBehind> &behind) {
    const auto count = [&](auto &&wanted) {
        return int(std::ranges::count_if(behind, wanted, &DecisionBehind::topic));
    };
    const int dismissed = count([](const TopicPtr &t) { return t->status == Dismissed; });
    const int kept =
        count([](const TopicPtr &t) { return t->status == Program || t->status == Done; });
    const int postponed = count([](const TopicPtr &t) { return t->postponedCount > 0; });
    const int all = int(behind.size());
    const QList<int> told = numbersIn(reflex.evidence);
    const bool corrected = reflex.id.startsWith(u"corr-");
    if (reflex.id == u"stack-first") {
        EXPECT_EQ(told[0], (200 * kept + all) / (2 * all));
    } else if (corrected) {
        EXPECT_EQ(told[0], all);
    } else {
        EXPECT_EQ(told[0], reflex.id == u"long-later" ? postponed : dismissed);
        EXPECT_EQ(told[1], all);
    }
    for (const DecisionBehind &each : behind) {
        EXPECT_EQ(each.at, corrected ? each.topic->correction->at : each.topic->triagedAt);
    }
    EXPECT_TRUE(std::ranges::is_sorted(behind, std::ranges::greater(), &DecisionBehind::at))
        << "newest first";
}

// Whatever the decisions are: what a reflex shows is what its figures count.
TEST(DecisionsBehind, are_those_that_a_reflex_counts) {
    std::mt19937 random(20261122);
    QMap<QString, int> seen;
    for (int round = 0; round < 300; ++round) {
        const AnyDecisions any(random);
        for (const Reflex &reflex : learn(any.topics, any.settings).reflexes) {
            expectTold(reflex, decisionsBehind(reflex.id, any.topics, any.settings));
            ++seen[reflex.id.section(u'-', 0, 0)];
        }
    }
    EXPECT_EQ(seen.size(), 5) << "every rule was met";
    for (const char *none : {"kind-nope", "project-Nope"}) {
        const auto behind = decisionsBehind(QString::fromLatin1(none), test::quiet().topics, {});
        EXPECT_TRUE(behind.isEmpty()) << none;
    }
}

} // namespace
} // namespace vorle
