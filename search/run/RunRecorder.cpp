#include "search/run/RunRecorder.h"

#include "agents/AgentError.h"
#include "base/French.h"
#include "base/SystemErrorText.h"

#include <algorithm>

namespace vorle {

RunRecorder::RunRecorder(std::function<void(const RunProgress &)> follow,
                         const std::optional<RunReport> &earlier)
    : report(earlier.value_or(RunReport())), m_follow(std::move(follow)) {
    m_clock.start();
    m_secondsBefore = report.seconds;
    // What this part counts on, and an earlier version did not write.
    for (ScopeReport &scope : report.scopes) {
        scope.yield = scope.yield.value_or(Yield());
    }
    report.steps = report.steps.value_or(QList<StepReport>());
    report.sites = report.sites.value_or(QList<SiteReport>());
    sumUp();
}

void RunRecorder::sumUp() {
    progress.calls = 0;
    progress.tokens.reset();
    for (const StepReport &step : *report.steps) {
        progress.calls += step.calls;
        if (step.tokens) {
            progress.tokens = progress.tokens.value_or(0) + *step.tokens;
        }
    }
    progress.costUSD = report.costUSD;
}

double RunRecorder::seconds() const {
    return m_secondsBefore + static_cast<double>(m_clock.elapsed()) / 1000.0;
}

qsizetype RunRecorder::openScope(const QString &name, Origin origin) {
    const auto same = [&](const ScopeReport &scope) {
        return scope.name == name && scope.origin == origin;
    };
    auto scope = std::ranges::find_if(report.scopes, same);
    if (scope == report.scopes.end()) {
        report.scopes += ScopeReport();
        scope = std::prev(report.scopes.end());
        scope->name = name;
        scope->origin = origin;
        scope->yield = Yield();
    }
    return std::distance(report.scopes.begin(), scope);
}

void RunRecorder::recordCall(RunStep step, double seconds, const AgentSpend &spent, CallEnd end) {
    const double costUSD = spent.costUSD.value_or(0);
    report.costUSD += costUSD;
    QList<StepReport> &steps = *report.steps;
    auto taken = std::ranges::find(steps, step, &StepReport::step);
    if (taken == steps.end()) {
        steps.append(StepReport{step});
        taken = std::prev(steps.end());
    }
    ++taken->calls;
    taken->failed += end == CallEnd::Failed ? 1 : 0;
    taken->seconds += seconds;
    taken->costUSD += costUSD;
    if (spent.tokens) {
        taken->tokens = taken->tokens.value_or(0) + *spent.tokens;
    }
    sumUp();
    tell();
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
    progress.seconds = seconds();
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

AgentSpend failureSpend(const std::exception &error) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    return agentError != nullptr ? agentError->spent() : AgentSpend();
}

} // namespace vorle
