#pragma once

#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/Preferences.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

namespace vorle {

/// Tells when the scheduled run is due. It looks at the clock now and then rather than once at the
/// end: timers stand still while a machine sleeps, clocks are set, and people travel. A moment that
/// passed while the machine slept is not made up for unasked, it only counts as missed. A clock
/// that was set back, or a zone further west, brings no second run of a day that had its own. Main
/// thread; what it is given outlives it.
class RunTimer final : public QObject {
    Q_OBJECT
public:
    /// How far apart two looks at the clock are at most.
    static constexpr std::chrono::milliseconds maxWait = std::chrono::minutes(10);
    /// How late a run still starts by itself: one look, and what a coarse timer adds to it.
    static constexpr std::chrono::milliseconds grace = std::chrono::minutes(12);

    RunTimer(const Preferences &preferences, const Clock &clock, const LocalZone &zone = {},
             QObject *parent = nullptr);

    /// The moment it waits for; nothing without a day in the schedule.
    std::optional<QDateTime> next() const { return m_next; }
    /// How long until it looks again.
    std::chrono::milliseconds wait() const { return m_timer.intervalAsDuration(); }

    /// Looks at the clock now, as when the machine wakes up.
    void look();

Q_SIGNALS:
    /// The run is to start now.
    void due();
    /// The clock was looked at: what depends on the day may have changed.
    void looked();

private:
    void arm();
    void follow();
    std::optional<QDateTime> dueAfter(const QDateTime &moment, const QTimeZone &zone) const;

    const Preferences &m_preferences;
    const Clock &m_clock;
    LocalZone m_zone;
    Schedule m_schedule; ///< as it was last told
    QTimer m_timer;
    std::optional<QDateTime> m_next;
    QDateTime m_looked; ///< when it last looked at the clock
    QDate m_served;     ///< the day whose run it last asked for
};

} // namespace vorle
