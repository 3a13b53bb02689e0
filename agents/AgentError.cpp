#include "agents/AgentError.h"

#include "agents/AgentWords.h"
#include "base/Text.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace vorle {

namespace {
QString translated(const char *french) { return QCoreApplication::translate("AgentError", french); }

constexpr qsizetype messageCharacters = 2'000;
constexpr qsizetype maxBytesPerCharacter = 8;
/// What a longer text is cut to before it is looked into.
constexpr qsizetype examinedCharacters = 100'000;

QString clampedWords(const QString &text) {
    const QString words = sanitized(text.first(std::min(text.size(), examinedCharacters)));
    const QStringView clamped = firstCharacters(
        utf8Prefix(words, messageCharacters * maxBytesPerCharacter), messageCharacters);
    return clamped.size() < words.size() ? clamped.toString() + u'…' : words;
}
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
    return {Case::Stopped, what + clampedWords(detail), Retry::Yes};
}

AgentError AgentError::timedOut(const QString &agent) {
    return {Case::TimedOut,
            translated(QT_TRANSLATE_NOOP("AgentError", "%1 n’a pas répondu à temps.")).arg(agent),
            Retry::Yes};
}

AgentError AgentError::message(const QString &text) {
    const QString words = clampedWords(text);
    const bool blank = trimmed(words).isEmpty();
    return {Case::Message,
            blank ? translated(QT_TRANSLATE_NOOP("AgentError", "erreur de l’agent")) : words,
            Retry::No};
}

AgentError AgentError::unreadable() {
    return {Case::Message,
            translated(QT_TRANSLATE_NOOP("AgentError", "réponse du moteur illisible")), Retry::Yes};
}

AgentError AgentError::missingInstruction() {
    return message(
        translated(QT_TRANSLATE_NOOP("AgentError", "Consigne du moteur absente de l’app.")));
}

AgentError AgentError::withSpent(const AgentSpend &spent) const {
    AgentError copy = *this;
    copy.m_spent = spent;
    return copy;
}

AgentError AgentError::withLimit(std::optional<UsageLimit> limit) const {
    AgentError copy = *this;
    copy.m_limit = std::move(limit);
    return copy;
}

} // namespace vorle
