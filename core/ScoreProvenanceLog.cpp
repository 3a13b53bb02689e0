#include "core/ScoreProvenanceLog.h"

namespace vorle {

ScoreProvenanceLog::ScoreProvenanceLog(const TopicStore &store, const Clock &clock)
    : m_records(store, clock,
                {QStringLiteral("score-notes.json"), QStringLiteral("the notes on scores")}) {}

} // namespace vorle
