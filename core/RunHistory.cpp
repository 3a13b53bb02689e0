#include "core/RunHistory.h"

#include "base/Log.h"
#include "core/BesideTopics.h"
#include "core/DurableFile.h"

#include <QFileInfo>

namespace vorle {

RunHistory::RunHistory(const QString &topicsFile)
    : m_file(besideTopics(topicsFile, QStringLiteral("runs.json"))) {}

QList<RunReport> RunHistory::reports() const {
    try {
        const auto bytes = m_file.isEmpty() ? std::nullopt : readWhole(m_file);
        return bytes ? json::decode<QList<RunReport>>(*bytes) : QList<RunReport>();
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the reports of past runs could not be read: ") +
                QString::fromUtf8(error.what()));
        return {};
    }
}

void RunHistory::replace(QList<RunReport> all) const {
    if (m_file.isEmpty() || all.isEmpty()) {
        return;
    }
    try {
        if (QFileInfo::exists(m_file) && reports().isEmpty()) {
            keepAside(m_file, asideName(m_file, all.last().date));
        }
        all = all.last(std::min(mostReports, all.size()));
        const QByteArray text = json::encode(all, json::Style::Pretty) + '\n';
        const QByteArrayView piece(text);
        replaceWhole(m_file, {&piece, 1});
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the report of the run could not be kept: ") +
                QString::fromUtf8(error.what()));
    }
}

} // namespace vorle
