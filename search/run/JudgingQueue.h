#pragma once

#include "judging/Judge.h"
#include "search/run/RunRecorder.h"

#include <deque>
#include <exception>
#include <functional>

namespace vorle {

/// Candidates on their way to the judge: they leave in batches, 2 calls at a time, while others are
/// still being read. A batch that could still grow waits for `finish`. Main thread; stays where it
/// is until `finish` has ended.
///
/// One bad page must not cost the others theirs: the candidates of a batch that failed, and those
/// it gave no answer for, are judged once more, each alone. That stops when two in a row came to
/// nothing, the judge being the trouble then, and is not tried when the agent is missing or signed
/// out.
///
/// A doubtful candidate, one that earlier runs could not have judged, comes last and alone:
/// whatever becomes of it says nothing of the judge, so it makes no other give up.
///
/// Once the gate is closed nothing more is judged: whatever waits, and comes, is left.
class JudgingQueue {
public:
    struct Handlers {
        /// A call ended, well or not, after so many seconds.
        std::function<void(double seconds, const AgentSpend &spent, RunRecorder::CallEnd end)>
            called;
        /// A call came back. The candidates told are those it answered for, and those that stay
        /// without an answer: no verdict is coming any more.
        std::function<void(const QList<JudgeCandidate> &, const Judge::Verdicts &)> judged;
        /// A call failed, its retry included. The candidates told stay without a verdict; those
        /// that are judged once more are not among them, so that there may be none.
        std::function<void(const QList<JudgeCandidate> &, const std::exception &)> failed;
        /// The candidates told are judged no more, since the calls before came to nothing; the
        /// last of them by that error, or by an answer that left its candidate out (null).
        std::function<void(const QList<JudgeCandidate> &, const std::exception *)> gaveUp;
        /// The candidates told are to be judged once the agent answers again.
        std::function<void(const QList<JudgeCandidate> &)> left;
    };

    /// `gate` must outlive the queue.
    JudgingQueue(Asker &asker, std::shared_ptr<const JudgeContext> context, CancelToken cancel,
                 LimitGate &gate, Handlers handlers);
    JudgingQueue(const JudgingQueue &) = delete;
    JudgingQueue &operator=(const JudgingQueue &) = delete;
    ~JudgingQueue() = default;

    void add(JudgeCandidate candidate);
    void addDoubtful(JudgeCandidate candidate);
    /// Judges what is left, and ends once every batch has. More may be added afterwards, and
    /// finished again. @throws Cancelled once nothing is under way any more; what was not judged
    /// is then left. Whatever else a handler threw comes out then too.
    Task<> finish();

private:
    enum class Turn { First, Alone, Doubtful };

    void send();
    void start(QList<JudgeCandidate> batch, Turn turn);
    Task<> judge(QList<JudgeCandidate> batch, Turn turn);
    void takeVerdicts(const QList<JudgeCandidate> &batch, Turn turn,
                      const Judge::Verdicts &verdicts);
    void takeFailure(QList<JudgeCandidate> batch, Turn turn, const std::exception &error);
    void countTurn(Turn turn, bool answered);
    void giveUp(const std::exception *error);
    void leaveAll();

    Judge m_judge;
    std::shared_ptr<const JudgeContext> m_context;
    CancelToken m_cancel;
    LimitGate &m_gate;
    Handlers m_handlers;
    QList<JudgeCandidate> m_waiting;
    QList<JudgeCandidate> m_retryAlone; ///< to be judged once more
    int m_failedInARow = 0;             ///< of these, the last ones that came to nothing
    QList<JudgeCandidate> m_doubtful;
    int m_doubtfulInVain = 0; ///< likewise
    TaskGroup m_calls;        ///< grows as batches end
    int m_underWay = 0;
    int m_doubtfulUnderWay = 0; ///< of these; none beside another's call
    bool m_finishing = false;
};

} // namespace vorle
