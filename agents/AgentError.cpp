#include "agents/AgentError.h"

#include <QCoreApplication>

namespace vorle {

namespace {
QString translated(const char *french) { return QCoreApplication::translate("AgentError", french); }
} // namespace

AgentError::AgentError(Case kind, const QString &text, Retry retry)
    : m_case(kind), m_mayRetry(retry == Retry::Yes), m_text(text), m_utf8(text.toUtf8()) {}

AgentError AgentError::notFound(const QString &agent) {
    return {
        Case::NotFound,
        translated(QT_TRANSLATE_NOOP("AgentError", "%1 est introuvable sur ce Mac.")).arg(agent),
        Retry::No};
}

AgentError AgentError::signedOut(const QString &agent) {
    return {Case::SignedOut,
            translated(QT_TRANSLATE_NOOP("AgentError", "%1 n’est plus connecté.")).arg(agent),
            Retry::No};
}

AgentError AgentError::stopped(int code, const QString &detail) {
    // The detail is the agent's: it is added last and never read as a pattern.
    const QString what =
        translated(QT_TRANSLATE_NOOP("AgentError", "L’IA s’est arrêtée (code %1). "))
            .arg(QString::number(code));
    return {Case::Stopped, what + detail, Retry::Yes};
}

AgentError AgentError::timedOut(const QString &agent) {
    return {Case::TimedOut,
            translated(QT_TRANSLATE_NOOP("AgentError", "%1 n’a pas répondu à temps.")).arg(agent),
            Retry::Yes};
}

AgentError AgentError::message(const QString &text) { return {Case::Message, text, Retry::No}; }

AgentError AgentError::unreadable() {
    return {Case::Message,
            translated(QT_TRANSLATE_NOOP("AgentError", "réponse du moteur illisible")), Retry::Yes};
}

AgentError AgentError::missingInstruction() {
    return message(
        translated(QT_TRANSLATE_NOOP("AgentError", "Consigne du moteur absente de l’app.")));
}

AgentError AgentError::withCost(std::optional<double> costUSD) const {
    AgentError copy = *this;
    copy.m_costUSD = costUSD;
    return copy;
}

} // namespace vorle
