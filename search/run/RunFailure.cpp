#include "search/run/RunFailure.h"

#include "agents/AgentError.h"
#include "search/run/RunRecorder.h"

#include <QCoreApplication>

namespace vorle {

namespace {

QString tr(const char *text) { return QCoreApplication::translate("vorle", text); }

} // namespace

RunFailure runFailure(const std::exception &error, const QString &agentName) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    return {failureText(error),
            agentError != nullptr && agentError->kind() == AgentError::Case::SignedOut, agentName};
}

FailureNotice failureNotice(const RunFailure &failure) {
    return {tr("Je n’ai pas pu fouiller."),
            failure.signedOut
                ? failure.agentName + tr(" n’est plus connecté. Ouvre vorle pour te reconnecter.")
                : failure.text};
}

QString failureLine(const RunFailure &failure) {
    return failureNotice(failure).title + u' ' + failure.text;
}

} // namespace vorle
