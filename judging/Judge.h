#pragma once

#include "agents/Ask.h"
#include "judging/JudgeContext.h"

#include <QHash>

namespace vorle {

/// Asks the agent to judge candidates, one call a batch. Main thread; what it is given must
/// outlive every call under way.
class Judge {
public:
    /// The judgments that came back, by candidate, and what they took.
    struct Verdicts {
        QHash<QString, Judgment> byId;
        AgentSpend spent;
    };

    /// A batch holds at most 8 candidates whose blocks take 56,000 bytes; a candidate whose block
    /// is longer stands alone. With the instruction, the profile and the examples at their
    /// largest, a prompt stays under what an agent accepts as an argument (131,071 bytes).
    static constexpr qsizetype batchCandidates = 8;
    static constexpr qsizetype batchBytes = 56'000;

    explicit Judge(Asker &asker) : m_asker(&asker) {}

    /// Judges one batch, with the one retry of every agent call. An answer for an unknown id, or
    /// with an unknown kind or urgency, is dropped; of two for one id the first counts; grades and
    /// minutes are held to their ranges and texts to their lengths. A candidate without an answer
    /// has no entry.
    /// @throws AgentError, std::system_error, Cancelled
    Task<Verdicts> judge(std::shared_ptr<const JudgeContext> context, QList<JudgeCandidate> batch,
                         CancelToken cancel);

private:
    Asker *m_asker;
};

/// How many of `waiting`, from the front, go into the next batch.
qsizetype nextBatchSize(const QList<JudgeCandidate> &waiting);

/// `judgment` with its grades between 0 and 10 (not a number: 0), its minutes between 1 and 600 and
/// its texts cut to what a card can show.
Judgment clampedToRange(Judgment judgment);

} // namespace vorle
