#include "app/RunTimer.h"

#include <algorithm>

namespace vorle {

RunTimer::RunTimer(const Preferences &preferences, const Clock &clock, const QTimeZone &zone,
                   QObject *parent)
    : QObject(parent), m_preferences(preferences), m_clock(clock), m_zone(zone) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::VeryCoarseTimer); // whole seconds, so that idle stays idle
    connect(&m_timer, &QTimer::timeout, this, &RunTimer::look);
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        if (key == u"schedule") {
            arm();
        }
    });
    arm();
}

void RunTimer::look() {
    const auto late = m_next ? std::chrono::milliseconds(m_next->msecsTo(m_clock.now()))
                             : std::chrono::milliseconds(-1);
    arm();
    Q_EMIT looked();
    if (late.count() >= 0 && late <= grace) {
        Q_EMIT due();
    }
}

void RunTimer::arm() {
    const QDateTime now = m_clock.now();
    m_next = m_preferences.settings().schedule.nextRun(now, m_zone);
    auto wait = longestWait;
    if (m_next) {
        // A whole second more: one that looked a moment early would wait for next week.
        const auto left = std::chrono::milliseconds(now.msecsTo(*m_next) + 1000);
        wait = std::clamp(left, std::chrono::milliseconds(1000), longestWait);
    }
    m_timer.start(wait);
}

} // namespace vorle
