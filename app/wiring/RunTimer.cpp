#include "app/wiring/RunTimer.h"

#include <algorithm>

namespace vorle {

RunTimer::RunTimer(const Preferences &preferences, const Clock &clock, const LocalZone &zone,
                   QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_clock(clock)
    , m_zone(zone)
    , m_schedule(preferences.settings().schedule)
    , m_looked(clock.now()) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::VeryCoarseTimer); // whole seconds, so that idle stays idle
    connect(&m_timer, &QTimer::timeout, this, &RunTimer::look);
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::schedule)) {
            follow();
        } else if (Preferences::isKeyOf(key, &Settings::lastSearch)) {
            arm();
        }
    });
    arm();
}

/// Another schedule from now on: what the old one made due since the last look still is, whereas a
/// moment of the new one that is past already was never waited for.
void RunTimer::follow() {
    look();
    m_schedule = m_preferences.settings().schedule;
    m_served = {}; // another moment of that day is another run
    arm();
}

void RunTimer::look() {
    const QDateTime now = m_clock.now();
    const QTimeZone zone = m_zone;
    // What was due since the last look and is not too late. The zone may be another by now.
    const QDateTime since = now.addMSecs(-grace.count()).addSecs(-1);
    const auto slot = dueAfter(std::max(m_looked, since), zone);
    m_looked = now;
    const bool isDue = slot && *slot <= now;
    if (isDue) {
        m_served = slot->toTimeZone(zone).date();
    }
    arm();
    Q_EMIT looked();
    if (isDue) {
        Q_EMIT due();
    }
}

std::optional<QDateTime> RunTimer::dueAfter(const QDateTime &moment, const QTimeZone &zone) const {
    const Settings &settings = m_preferences.settings();
    const QDateTime now = m_clock.now();
    QDateTime after = moment;
    if (settings.lastSearch && settings.believes(now)) {
        after = std::max(after, *settings.lastSearch);
    }
    const auto served = settings.believedSlot(now);
    auto slot = m_schedule.nextRun(after, zone, served);
    if (slot && slot->toTimeZone(zone).date() == m_served) {
        slot = m_schedule.nextRun(*slot, zone, served);
    }
    return slot;
}

void RunTimer::arm() {
    const QDateTime now = m_clock.now();
    m_next = dueAfter(now, m_zone);
    auto wait = maxWait;
    if (m_next) {
        // A whole second more: one that looked a moment early would only have to look again.
        const auto left = std::chrono::milliseconds(now.msecsTo(*m_next) + 1000);
        wait = std::clamp(left, std::chrono::milliseconds(1000), maxWait);
    }
    m_timer.start(wait);
}

} // namespace vorle
