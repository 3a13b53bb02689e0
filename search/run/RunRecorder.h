#pragma once

#include "core/RunReport.h"

#include <functional>

namespace vorle {

/// What a run notes as it goes, shared by its parts: the report, the progress and whoever follows
/// it. Main thread; lives as long as the run.
class RunRecorder {
public:
    explicit RunRecorder(std::function<void(const RunProgress &)> follow)
        : m_follow(std::move(follow)) {}
    RunRecorder(const RunRecorder &) = delete;
    RunRecorder &operator=(const RunRecorder &) = delete;
    ~RunRecorder() = default;

    RunReport report;
    RunProgress progress;

    enum class CallEnd { Answered, Failed };
    /// Notes a call of that step which took so many seconds and cost so many US dollars; `end`
    /// tells whether it came to anything.
    void recordCall(RunStep step, double seconds, double costUSD, CallEnd end);

    /// Shows `status` until the next one.
    void show(const QString &status);
    /// From here on the status is the reading count.
    void showReading();
    /// Tells the present progress.
    void tell();

private:
    std::function<void(const RunProgress &)> m_follow;
    bool m_reading = false;
};

/// The text of whatever a step failed with, for the user; never blank.
QString failureText(const std::exception &error);
/// What a failed call to the agent cost, in US dollars; 0 for any other failure.
double failureCost(const std::exception &error);

} // namespace vorle
