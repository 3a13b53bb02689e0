#include "search/run/RunFailure.h"

#include "agents/AgentError.h"
#include "base/French.h"
#include "search/run/RunRecorder.h"

namespace vorle {

RunFailure runFailure(const std::exception &error, const QString &agentName) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    return {failureText(error),
            agentError != nullptr && agentError->kind() == AgentError::Case::SignedOut, agentName};
}

FailureNotice failureNotice(const RunFailure &failure) {
    return {French::tr("Je n’ai pas pu fouiller."),
            failure.signedOut
                ? failure.agentName +
                      French::tr(" n’est plus connecté. Ouvre vorle pour te reconnecter.")
                : failure.text};
}

QString failureLine(const RunFailure &failure) {
    return failureNotice(failure).title + u' ' + failure.text;
}

} // namespace vorle
