#include "core/ScoreProvenanceLog.h"

namespace vorle {

ScoreProvenanceLog::ScoreProvenanceLog(const TopicStore &store, const Clock &clock)
    : m_records(store, clock, {fileName(), QStringLiteral("the notes on scores")}) {}

void ScoreProvenanceLog::replace(const QString &topicsFile, const QList<ScoreProvenance> &records) {
    try {
        replaceWhole(sidecarPath(topicsFile, fileName()),
                     json::encode(records, json::Style::Pretty) + '\n');
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the notes on scores could not be kept: ") +
                QString::fromLocal8Bit(error.what()));
    }
}

} // namespace vorle
