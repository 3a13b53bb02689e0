#pragma once

#include "agents/AgentSpend.h"
#include "core/RunReport.h"
#include "search/run/LimitGate.h"

#include <QElapsedTimer>

#include <functional>

namespace vorle {

/// What a run notes as it goes, shared by its parts: the report, the progress and whoever follows
/// it. Main thread; lives as long as the run.
class RunRecorder {
public:
    /// Of the first part of a run; of a further one, behind `earlier`, the report so far.
    explicit RunRecorder(std::function<void(const RunProgress &)> follow,
                         const std::optional<RunReport> &earlier = {});
    RunRecorder(const RunRecorder &) = delete;
    RunRecorder &operator=(const RunRecorder &) = delete;
    ~RunRecorder() = default;

    RunReport report;
    RunProgress progress;
    LimitGate gate; ///< closed once the agent has reached its limit

    enum class CallEnd { Answered, Failed };
    /// Notes a call of that step which took so many seconds and what the agent says; `end` tells
    /// whether it came to anything.
    void recordCall(RunStep step, double seconds, const AgentSpend &spent, CallEnd end);

    /// The index of the report of that scope: a new one, unless an earlier part has it.
    qsizetype openScope(const QString &name, Origin origin);
    /// How long the run has been at work, in seconds.
    double seconds() const;

    /// Shows `status` until the next one.
    void show(const QString &status);
    /// From here on the status is the reading count.
    void showReading();
    /// Tells the present progress.
    void tell();

private:
    void sumUp();

    std::function<void(const RunProgress &)> m_follow;
    QElapsedTimer m_clock;
    double m_secondsBefore = 0; ///< of the earlier parts
    bool m_reading = false;
};

/// The text of whatever a step failed with, for the user; never blank.
QString failureText(const std::exception &error);
/// What a failed call to the agent took; nothing for any other failure.
AgentSpend failureSpend(const std::exception &error);

} // namespace vorle
