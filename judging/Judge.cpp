#include "judging/Judge.h"

#include "base/Text.h"

#include <cmath>

namespace vorle {

namespace {

constexpr int highestGrade = 10;
constexpr int mostMinutes = 600;
constexpr qsizetype gistCharacters = 300;
constexpr qsizetype summaryCharacters = 2'000;
constexpr qsizetype reasonCharacters = 1'000;
constexpr qsizetype changeCharacters = 300;
constexpr qsizetype mostChanges = 12;

struct JudgeAnswer {
    QList<Judgment> judgments;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("judgments", &JudgeAnswer::judgments));
    }
};

void cut(QString &text, qsizetype characters) {
    text = firstCharacters(trimmed(text), characters).toString();
}

} // namespace

Judgment heldToRange(Judgment judgment) {
    const auto grade = [](int value) { return std::clamp(value, 0, highestGrade); };
    judgment.criteria.impact = grade(judgment.criteria.impact);
    judgment.criteria.actionability = grade(judgment.criteria.actionability);
    judgment.criteria.novelty = grade(judgment.criteria.novelty);
    judgment.criteria.reliability = grade(judgment.criteria.reliability);
    judgment.criteria.effortMinutes = std::clamp(judgment.criteria.effortMinutes, 1, mostMinutes);
    judgment.relevance = std::isnan(judgment.relevance)
                             ? 0
                             : std::clamp(judgment.relevance, 0.0, double(highestGrade));
    cut(judgment.tldr, gistCharacters);
    cut(judgment.summary, summaryCharacters);
    cut(judgment.why, reasonCharacters);
    cut(judgment.firstStep, reasonCharacters);
    judgment.changes = judgment.changes.first(std::min(mostChanges, judgment.changes.size()));
    for (QString &change : judgment.changes) {
        cut(change, changeCharacters);
    }
    for (auto *text : {&judgment.urgency.date, &judgment.urgency.reason}) {
        if (text->has_value()) {
            cut(**text, gistCharacters);
            if ((*text)->isEmpty()) {
                text->reset();
            }
        }
    }
    return judgment;
}

qsizetype nextBatchSize(const QList<JudgeCandidate> &waiting) {
    qsizetype bytes = 0;
    qsizetype size = 0;
    while (size < std::min(Judge::batchCandidates, waiting.size())) {
        bytes += utf8Size(candidateBlock(waiting[size]));
        if (size > 0 && bytes > Judge::batchBytes) {
            break;
        }
        ++size;
    }
    return size;
}

Task<Judge::Verdicts> Judge::judge(std::shared_ptr<const JudgeBrief> brief,
                                   QList<JudgeCandidate> batch, CancelToken cancel) {
    Question question;
    question.prompt =
        judgePrompt(loadPrompt(m_asker->resources(), QStringLiteral("judge-prompt")), brief->today,
                    brief->profile, brief->reflexLines, brief->examples, batch);
    question.schemaName = QStringLiteral("judge-schema");
    question.step = QStringLiteral("judge");
    auto asked = co_await m_asker->ask<JudgeAnswer>(std::move(question), cancel);

    QSet<QString> wanted;
    for (const JudgeCandidate &candidate : batch) {
        wanted.insert(candidate.id);
    }
    Verdicts verdicts;
    verdicts.costUSD = asked.costUSD;
    for (Judgment &judgment : asked.answer.judgments) {
        if (wanted.contains(judgment.id) && !verdicts.byId.contains(judgment.id)) {
            const QString id = judgment.id;
            verdicts.byId.insert(id, heldToRange(std::move(judgment)));
        }
    }
    co_return verdicts;
}

} // namespace vorle
