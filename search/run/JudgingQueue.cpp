#include "search/run/JudgingQueue.h"

#include <QElapsedTimer>

namespace vorle {

namespace {

constexpr int maxConcurrentCalls = 2;
constexpr int maxFailuresInARow = 2;
/// So many in a row, and it is the judge after all.
constexpr int maxDoubtfulInVain = 4;

/// Whether another call may do better. A missing or signed-out agent stays so for the whole run.
bool mayDoBetter(const std::exception &error) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    return agentError == nullptr || (agentError->kind() != AgentError::Case::NotFound &&
                                     agentError->kind() != AgentError::Case::SignedOut);
}

} // namespace

JudgingQueue::JudgingQueue(Asker &asker, std::shared_ptr<const JudgeContext> context,
                           CancelToken cancel, LimitGate &gate, Handlers handlers)
    : m_judge(asker)
    , m_context(std::move(context))
    , m_cancel(std::move(cancel))
    , m_gate(gate)
    , m_handlers(std::move(handlers)) {}

void JudgingQueue::add(JudgeCandidate candidate) {
    m_waiting.append(std::move(candidate));
    send();
}

void JudgingQueue::addDoubtful(JudgeCandidate candidate) {
    m_doubtful.append(std::move(candidate));
    send();
}

void JudgingQueue::leaveAll() {
    const QList<JudgeCandidate> all = std::exchange(m_waiting, {}) +
                                      std::exchange(m_retryAlone, {}) +
                                      std::exchange(m_doubtful, {});
    if (!all.isEmpty()) {
        m_handlers.left(all);
    }
}

void JudgingQueue::send() {
    if (m_gate.isClosed()) {
        leaveAll();
        return;
    }
    while (!m_cancel.isCancelled() && m_underWay < maxConcurrentCalls) {
        const qsizetype size = nextBatchSize(m_waiting);
        const bool mayGrow = size == m_waiting.size() && size < Judge::batchCandidates;
        if (size > 0 && (m_finishing || !mayGrow)) {
            const QList<JudgeCandidate> batch = m_waiting.first(size);
            m_waiting.remove(0, size);
            start(batch, Turn::First);
        } else if (!m_retryAlone.isEmpty()) {
            start({m_retryAlone.takeFirst()}, Turn::Alone);
        } else if (m_finishing && m_underWay == m_doubtfulUnderWay && !m_doubtful.isEmpty()) {
            start({m_doubtful.takeFirst()}, Turn::Doubtful);
        } else {
            return;
        }
    }
}

void JudgingQueue::start(QList<JudgeCandidate> batch, Turn turn) {
    ++m_underWay;
    m_doubtfulUnderWay += turn == Turn::Doubtful ? 1 : 0;
    m_calls.add(judge(std::move(batch), turn));
}

Task<> JudgingQueue::judge(QList<JudgeCandidate> batch, Turn turn) {
    std::exception_ptr fault;
    try {
        std::optional<Judge::Verdicts> verdicts;
        QElapsedTimer clock;
        clock.start();
        const auto seconds = [&] { return static_cast<double>(clock.elapsed()) / 1000.0; };
        try {
            verdicts = co_await m_judge.judge(m_context, batch, m_cancel);
            m_handlers.called(seconds(), verdicts->spent, RunRecorder::CallEnd::Answered);
        } catch (const Cancelled &) {
            throw;
        } catch (const std::exception &error) {
            m_handlers.called(seconds(), failureSpend(error), RunRecorder::CallEnd::Failed);
            if (m_gate.isClosedBy(error)) {
                m_handlers.left(batch);
            } else {
                takeFailure(batch, turn, error);
            }
        }
        if (verdicts) {
            takeVerdicts(batch, turn, *verdicts);
        }
    } catch (...) {
        fault = std::current_exception();
    }
    --m_underWay;
    m_doubtfulUnderWay -= turn == Turn::Doubtful ? 1 : 0;
    if (fault) {
        std::rethrow_exception(fault);
    }
    send();
}

void JudgingQueue::takeVerdicts(const QList<JudgeCandidate> &batch, Turn turn,
                                const Judge::Verdicts &verdicts) {
    QList<JudgeCandidate> told;
    for (const JudgeCandidate &candidate : batch) {
        const bool answered = verdicts.byId.contains(candidate.id);
        countTurn(turn, answered);
        if (answered || turn != Turn::First) {
            told += candidate;
        } else {
            m_retryAlone += candidate;
        }
    }
    m_handlers.judged(told, verdicts);
    giveUp(nullptr);
}

void JudgingQueue::takeFailure(QList<JudgeCandidate> batch, Turn turn,
                               const std::exception &error) {
    countTurn(turn, false);
    if (turn == Turn::First && batch.size() > 1 && mayDoBetter(error)) {
        m_retryAlone += std::exchange(batch, {});
    }
    m_handlers.failed(batch, error);
    giveUp(&error);
}

/// A batch that came to nothing says little: what is in it is judged once more.
void JudgingQueue::countTurn(Turn turn, bool answered) {
    int &inVain = turn == Turn::Doubtful ? m_doubtfulInVain : m_failedInARow;
    if (answered) {
        inVain = 0;
    } else if (turn != Turn::First) {
        ++inVain;
    }
}

/// Leaves those that are not judged after all.
void JudgingQueue::giveUp(const std::exception *error) {
    QList<JudgeCandidate> given;
    if (m_failedInARow >= maxFailuresInARow) {
        given += std::exchange(m_retryAlone, {});
    }
    if (m_doubtfulInVain >= maxDoubtfulInVain) {
        given += std::exchange(m_doubtful, {});
    }
    if (!given.isEmpty()) {
        m_handlers.gaveUp(given, error);
    }
}

Task<> JudgingQueue::finish() {
    m_finishing = true;
    send();
    std::exception_ptr fault;
    co_await settle(m_calls.join(), fault);
    m_finishing = false;
    if (fault) {
        std::rethrow_exception(fault);
    }
    if (!m_waiting.isEmpty() || !m_retryAlone.isEmpty() || !m_doubtful.isEmpty()) {
        throw Cancelled();
    }
}

} // namespace vorle
