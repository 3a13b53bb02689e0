#include "search/RunBook.h"

#include "agents/AgentError.h"
#include "base/SystemErrorText.h"

#include <QCoreApplication>

namespace vorle {

namespace {

QString tr(const char *text) { return QCoreApplication::translate("SearchRun", text); }

} // namespace

void RunBook::show(const QString &status) {
    m_reading = false;
    progress.status = status;
    tell();
}

void RunBook::showReading() {
    m_reading = true;
    tell();
}

void RunBook::tell() {
    if (m_reading && progress.candidates > 0) {
        progress.status =
            tr("Lecture et tri : ") + tr("%1 sur %2").arg(progress.judged).arg(progress.candidates);
    }
    m_follow(progress);
}

QString failureText(const std::exception &error) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    if (agentError != nullptr) {
        return agentError->text().trimmed();
    }
    const auto *refusal = dynamic_cast<const std::system_error *>(&error);
    return refusal != nullptr ? systemRefusalText(*refusal) : QString::fromUtf8(error.what());
}

double failureCost(const std::exception &error) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    return agentError != nullptr ? agentError->costUSD().value_or(0) : 0.0;
}

} // namespace vorle
