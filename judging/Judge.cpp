#include "judging/Judge.h"

#include "agents/PromptText.h"
#include "base/Text.h"

#include <cmath>

namespace vorle {

namespace {

constexpr int maxGrade = 10;
constexpr int maxMinutes = 600;
constexpr qsizetype gistCharacters = 300;
constexpr qsizetype summaryCharacters = 2'000;
constexpr qsizetype reasonCharacters = 1'000;
constexpr qsizetype changeCharacters = 300;
constexpr qsizetype maxChanges = 12;

/// A judgment as it came: words and grades are checked one judgment at a time, so that a bad one
/// does not cost the others.
struct AnsweredCriteria {
    double impact = 0;
    double actionability = 0;
    double novelty = 0;
    double reliability = 0;
    double effortMinutes = 0;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("impact", &AnsweredCriteria::impact),
                          json::field("actionability", &AnsweredCriteria::actionability),
                          json::field("novelty", &AnsweredCriteria::novelty),
                          json::field("reliability", &AnsweredCriteria::reliability),
                          json::field("effort_minutes", &AnsweredCriteria::effortMinutes));
    }
};

struct AnsweredUrgency {
    QString level;
    std::optional<QString> date;
    std::optional<QString> reason;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("level", &AnsweredUrgency::level),
                          json::field("date", &AnsweredUrgency::date),
                          json::field("reason", &AnsweredUrgency::reason));
    }
};

struct AnsweredJudgment {
    QString id;
    QString kind;
    AnsweredCriteria criteria;
    double relevance = 0;
    AnsweredUrgency urgency;
    QString tldr;
    QString summary;
    QString why;
    QString firstStep;
    QList<QString> changes;

    static constexpr auto jsonFields() {
        using J = AnsweredJudgment;
        return std::tuple(
            json::field("id", &J::id), json::field("kind", &J::kind),
            json::field("criteria", &J::criteria), json::field("relevance", &J::relevance),
            json::field("urgency", &J::urgency), json::field("tldr", &J::tldr),
            json::field("summary", &J::summary), json::field("why", &J::why),
            json::field("first_step", &J::firstStep), json::field("changes", &J::changes));
    }
};

struct JudgeAnswer {
    QList<AnsweredJudgment> judgments;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("judgments", &JudgeAnswer::judgments));
    }
};

/// The nearest whole number in the range; agents give half grades now and then.
int whole(double value, int least, int most) {
    return std::isnan(value)
               ? least
               : static_cast<int>(std::lround(std::clamp<double>(value, least, most)));
}

/// The judgment, or nothing when its kind or its urgency is none of the known words.
std::optional<Judgment> accepted(const AnsweredJudgment &answer) {
    const auto kind = json::fromRaw<ItemKind>(answer.kind);
    const auto level = json::fromRaw<Judgment::Urgency::Level>(answer.urgency.level);
    if (!kind || !level) {
        return std::nullopt;
    }
    const AnsweredCriteria &grades = answer.criteria;
    Judgment judgment;
    judgment.id = answer.id;
    judgment.kind = *kind;
    judgment.criteria = {whole(grades.impact, 0, maxGrade),
                         whole(grades.actionability, 0, maxGrade),
                         whole(grades.novelty, 0, maxGrade), whole(grades.reliability, 0, maxGrade),
                         whole(grades.effortMinutes, 1, maxMinutes)};
    judgment.relevance = answer.relevance;
    judgment.urgency = {*level, answer.urgency.date, answer.urgency.reason};
    judgment.tldr = answer.tldr;
    judgment.summary = answer.summary;
    judgment.why = answer.why;
    judgment.firstStep = answer.firstStep;
    judgment.changes = answer.changes;
    return clampedToRange(std::move(judgment));
}

void cut(QString &text, qsizetype characters) {
    text = clampedLines(trimmed(text).toString(), characters);
}

} // namespace

Judgment clampedToRange(Judgment judgment) {
    const auto grade = [](int value) { return std::clamp(value, 0, maxGrade); };
    judgment.criteria.impact = grade(judgment.criteria.impact);
    judgment.criteria.actionability = grade(judgment.criteria.actionability);
    judgment.criteria.novelty = grade(judgment.criteria.novelty);
    judgment.criteria.reliability = grade(judgment.criteria.reliability);
    judgment.criteria.effortMinutes = std::clamp(judgment.criteria.effortMinutes, 1, maxMinutes);
    judgment.relevance =
        std::isnan(judgment.relevance) ? 0 : std::clamp(judgment.relevance, 0.0, double(maxGrade));
    cut(judgment.tldr, gistCharacters);
    cut(judgment.summary, summaryCharacters);
    cut(judgment.why, reasonCharacters);
    cut(judgment.firstStep, reasonCharacters);
    judgment.changes = judgment.changes.first(std::min(maxChanges, judgment.changes.size()));
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
        bytes += promptSize(candidateBlock(waiting[size]));
        if (size > 0 && bytes > Judge::batchBytes) {
            break;
        }
        ++size;
    }
    return size;
}

Task<Judge::Verdicts> Judge::judge(std::shared_ptr<const JudgeContext> context,
                                   QList<JudgeCandidate> batch, CancelToken cancel) {
    Question question;
    question.prompt = judgePrompt(loadPrompt(m_asker->resources(), QStringLiteral("judge-prompt")),
                                  context->today, context->profile, context->reflexLines(),
                                  context->examples, batch);
    question.schemaName = QStringLiteral("judge-schema");
    question.step = QStringLiteral("judge");
    question.agent = context->agent;
    auto asked = co_await m_asker->ask<JudgeAnswer>(std::move(question), cancel);

    QSet<QString> wanted;
    for (const JudgeCandidate &candidate : batch) {
        wanted.insert(candidate.id);
    }
    Verdicts verdicts;
    verdicts.spent = asked.spent;
    for (const AnsweredJudgment &answer : asked.answer.judgments) {
        const auto judgment = accepted(answer);
        if (judgment && wanted.contains(answer.id) && !verdicts.byId.contains(answer.id)) {
            verdicts.byId.insert(answer.id, *judgment);
        }
    }
    co_return verdicts;
}

} // namespace vorle
