#include "search/capture/DailyAllowance.h"

#include "base/Log.h"
#include "storage/BesideTopics.h"

#include <algorithm>
#include <exception>

namespace vorle {

DailyAllowance::DailyAllowance(const QString &topicsFile, const Clock &clock, LocalZone zone)
    : m_file(sidecarPath(topicsFile, QStringLiteral("captures.json")))
    , m_clock(clock)
    , m_zone(std::move(zone)) {
    if (m_file.isEmpty()) {
        return;
    }
    try {
        if (const auto bytes = readWhole(m_file)) {
            m_record = json::decode<Record>(*bytes);
        }
    } catch (const std::exception &error) {
        logLine(QStringLiteral("what was judged today could not be read: ") +
                QString::fromLocal8Bit(error.what()));
    }
}

int DailyAllowance::left() {
    turnPage();
    return std::clamp(linksADay - m_record.judged, 0, linksADay);
}

Task<> DailyAllowance::spend(int judged) {
    turnPage();
    m_record.judged = std::clamp(m_record.judged, 0, linksADay) + judged;
    if (m_file.isEmpty()) {
        co_return;
    }
    const QByteArray bytes = json::encode(m_record, json::Style::Pretty);
    const QString problem = co_await onPool([file = m_file, bytes, now = m_clock.now()] {
        try {
            replaceable<Record>(file, now); // what it is none of is kept
            replaceWhole(file, bytes);
            return QString();
        } catch (const std::exception &error) {
            return QString::fromLocal8Bit(error.what());
        }
    });
    if (!problem.isEmpty()) {
        logLine(QStringLiteral("what was judged today was not kept: ") + problem);
    }
}

void DailyAllowance::turnPage() {
    const QString today = m_clock.now().toTimeZone(m_zone.now()).date().toString(Qt::ISODate);
    if (m_record.day != today) {
        m_record.day = today;
        m_record.judged = 0;
    }
}

} // namespace vorle
