#include "search/JudgingLine.h"

namespace vorle {

namespace {

constexpr int callsAtOnce = 2;

} // namespace

JudgingLine::JudgingLine(Asker &asker, std::shared_ptr<const JudgeBrief> brief, CancelToken cancel,
                         Handlers handlers)
    : m_judge(asker)
    , m_brief(std::move(brief))
    , m_cancel(std::move(cancel))
    , m_handlers(std::move(handlers)) {}

void JudgingLine::add(JudgeCandidate candidate) {
    m_waiting.append(std::move(candidate));
    send();
}

void JudgingLine::send() {
    while (!m_cancel.isCancelled() && m_underWay < callsAtOnce && !m_waiting.isEmpty()) {
        const qsizetype size = nextBatchSize(m_waiting);
        const bool mayGrow = size == m_waiting.size() && size < Judge::batchCandidates;
        if (mayGrow && !m_finishing) {
            return;
        }
        const QList<JudgeCandidate> batch = m_waiting.first(size);
        m_waiting.remove(0, size);
        ++m_underWay;
        m_calls.push_back(judge(batch));
    }
}

Task<> JudgingLine::judge(QList<JudgeCandidate> batch) {
    try {
        const Judge::Verdicts verdicts = co_await m_judge.judge(m_brief, batch, m_cancel);
        m_handlers.judged(batch, verdicts);
    } catch (const Cancelled &) {
        --m_underWay;
        throw;
    } catch (const std::exception &error) {
        m_handlers.failed(batch, error);
    }
    --m_underWay;
    send();
}

Task<> JudgingLine::finish() {
    m_finishing = true;
    send();
    bool cancelled = false;
    for (std::size_t i = 0; i < m_calls.size(); ++i) {
        try {
            co_await m_calls[i];
        } catch (const Cancelled &) {
            cancelled = true;
        }
    }
    m_calls.clear();
    m_finishing = false;
    if (cancelled || !m_waiting.isEmpty()) {
        throw Cancelled();
    }
}

} // namespace vorle
