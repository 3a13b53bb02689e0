#include "app/wiring/ResumeTimer.h"

#include <algorithm>

namespace vorle {

ResumeTimer::ResumeTimer(SearchEngine &engine, RunTimer &runs, const Clock &clock, QObject *parent)
    : QObject(parent), m_engine(engine), m_runs(runs), m_clock(clock) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_timer, &QTimer::timeout, &m_runs, &RunTimer::look);
    // Behind whatever that look starts.
    connect(&m_runs, &RunTimer::looked, this, &ResumeTimer::look, Qt::QueuedConnection);
    connect(&m_engine, &SearchEngine::remainderChanged, this, &ResumeTimer::arm);
    QMetaObject::invokeMethod(this, &ResumeTimer::look, Qt::QueuedConnection);
}

std::optional<std::chrono::milliseconds> ResumeTimer::wait() const {
    return m_timer.isActive() ? std::optional(m_timer.intervalAsDuration()) : std::nullopt;
}

void ResumeTimer::look() {
    arm();
    const auto &rest = m_engine.remainder();
    const bool running = m_engine.phase() != SearchEngine::Phase::Idle;
    if (rest && resumeAction(*rest, m_clock.now(), running) == ResumeAction::Go) {
        Q_EMIT due();
    }
}

/// Between two looks of the schedule's, for an hour that comes before the next one.
void ResumeTimer::arm() {
    m_timer.stop();
    const auto &rest = m_engine.remainder();
    const QDateTime now = m_clock.now();
    if (!rest || !rest->waits().until || resumeAction(*rest, now, false) != ResumeAction::Wait) {
        return;
    }
    const auto left = std::chrono::milliseconds(now.msecsTo(*rest->waits().until)) + margin;
    if (left <= RunTimer::maxWait) {
        m_timer.start(std::chrono::milliseconds(left));
    }
}

} // namespace vorle
