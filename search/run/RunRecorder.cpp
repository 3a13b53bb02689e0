#include "search/run/RunRecorder.h"

#include "agents/AgentError.h"
#include "base/French.h"
#include "base/SystemErrorText.h"

#include <algorithm>

namespace vorle {

void RunRecorder::recordCall(RunStep step, double seconds, double costUSD, CallEnd end) {
    report.costUSD += costUSD;
    QList<StepReport> steps = report.steps.value_or(QList<StepReport>());
    auto counted = std::ranges::find(steps, step, &StepReport::step);
    if (counted == steps.end()) {
        steps.append(StepReport{step});
        counted = std::prev(steps.end());
    }
    ++counted->calls;
    counted->failed += end == CallEnd::Failed ? 1 : 0;
    counted->seconds += seconds;
    counted->costUSD += costUSD;
    report.steps = std::move(steps);
}

void RunRecorder::show(const QString &status) {
    m_reading = false;
    progress.status = status;
    tell();
}

void RunRecorder::showReading() {
    m_reading = true;
    tell();
}

void RunRecorder::tell() {
    if (m_reading && progress.candidates > 0) {
        progress.status = French::tr("Lecture et tri : ") +
                          French::tr("%1 sur %2").arg(progress.judged).arg(progress.candidates);
    }
    m_follow(progress);
}

QString failureText(const std::exception &error) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    if (agentError != nullptr) {
        return agentError->text().trimmed();
    }
    const auto *refusal = dynamic_cast<const std::system_error *>(&error);
    if (refusal != nullptr) {
        return systemRefusalText(*refusal);
    }
    const QString told = QString::fromUtf8(error.what()).trimmed();
    return told.isEmpty() ? French::tr("erreur inattendue") : told;
}

double failureCost(const std::exception &error) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    return agentError != nullptr ? agentError->costUSD().value_or(0) : 0.0;
}

} // namespace vorle
