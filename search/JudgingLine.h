#pragma once

#include "judging/Judge.h"

#include <deque>
#include <exception>
#include <functional>

namespace vorle {

/// Candidates on their way to the judge: they leave in batches, 2 calls at a time, while others are
/// still being read. A batch that could still grow waits for `finish`. Main thread; stays where it
/// is until `finish` has ended.
class JudgingLine {
public:
    struct Handlers {
        /// A batch came back; it may hold no verdict for some of its candidates.
        std::function<void(const QList<JudgeCandidate> &, const Judge::Verdicts &)> judged;
        /// A batch could not be judged, retry included.
        std::function<void(const QList<JudgeCandidate> &, const std::exception &)> failed;
    };

    JudgingLine(Asker &asker, std::shared_ptr<const JudgeBrief> brief, CancelToken cancel,
                Handlers handlers);
    JudgingLine(const JudgingLine &) = delete;
    JudgingLine &operator=(const JudgingLine &) = delete;
    ~JudgingLine() = default;

    void add(JudgeCandidate candidate);
    /// Judges what is left, and ends once every batch has. More may be added afterwards, and
    /// finished again. @throws Cancelled once nothing is under way any more; what was not judged
    /// is then left.
    Task<> finish();

private:
    void send();
    Task<> judge(QList<JudgeCandidate> batch);

    Judge m_judge;
    std::shared_ptr<const JudgeBrief> m_brief;
    CancelToken m_cancel;
    Handlers m_handlers;
    QList<JudgeCandidate> m_waiting;
    std::deque<Task<>> m_calls; ///< grows as batches end
    int m_underWay = 0;
    bool m_finishing = false;
};

} // namespace vorle
