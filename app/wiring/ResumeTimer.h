#pragma once

#include "app/wiring/RunTimer.h"
#include "search/run/SearchEngine.h"

#include <QObject>
#include <QTimer>

#include <chrono>

namespace vorle {

/// Tells when the rest of a run is to go on, see resumeAction(). It looks whenever the schedule's
/// timer does, and just after the hour that the agent named; a scheduled run that is due at the
/// same look goes first, and takes the rest in. Main thread; what it is given outlives it.
class ResumeTimer final : public QObject {
    Q_OBJECT
public:
    /// How long after the agent's hour it looks: two clocks are never quite alike.
    static constexpr std::chrono::seconds margin = std::chrono::minutes(1);

    ResumeTimer(SearchEngine &engine, RunTimer &runs, const Clock &clock,
                QObject *parent = nullptr);

    /// How long until it looks by itself; nothing while the schedule's looks are enough.
    std::optional<std::chrono::milliseconds> wait() const;

Q_SIGNALS:
    /// The rest is to go on now.
    void due();

private:
    void look();
    void arm();

    SearchEngine &m_engine;
    RunTimer &m_runs;
    const Clock &m_clock;
    QTimer m_timer;
};

} // namespace vorle
