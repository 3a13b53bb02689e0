#pragma once

#include "agents/AgentSpend.h"
#include "agents/UsageLimit.h"

#include <QByteArray>
#include <QString>

#include <exception>
#include <optional>

namespace vorle {

/// Every failure of a call to the agent. Its text is for the user: screens show it unchanged. It is
/// never blank, and what the agent said in it is harmless (see AgentWords.h).
/// What the system itself refuses (a file, a launch) is no AgentError but a std::system_error.
class AgentError final : public std::exception {
public:
    enum class Case { NotFound, SignedOut, Stopped, Message, TimedOut };

    /// `agent` is the display name. No retry helps.
    static AgentError notFound(const QString &agent);
    static AgentError signedOut(const QString &agent);
    /// The process ended by itself with a status other than 0, or by signal number `code`.
    static AgentError stopped(int code, const QString &detail);
    static AgentError timedOut(const QString &agent);
    /// A text shown as it is, up to 2,000 characters: the agent's own refusal, or ours; "erreur de
    /// l’agent" in the place of a blank one. Not worth a retry.
    static AgentError message(const QString &text);
    /// "réponse du moteur illisible": a message too, but one a second try may cure.
    static AgentError unreadable();
    /// "Consigne du moteur absente de l’app.": a prompt or a schema is missing or broken.
    static AgentError missingInstruction();

    Case kind() const { return m_case; }
    const QString &text() const { return m_text; }
    /// Whether calling once more is worth it: stopped, timed out and unreadable, unless a limit
    /// was reached.
    bool mayRetry() const { return m_mayRetry && !m_limit; }

    /// What the failed call took.
    const AgentSpend &spent() const { return m_spent; }
    AgentError withSpent(const AgentSpend &spent) const;

    /// The limit of the account that made the agent fail, if one did: every further call would
    /// fail alike until it is lifted.
    const std::optional<UsageLimit> &limit() const { return m_limit; }
    AgentError withLimit(std::optional<UsageLimit> limit) const;

    /// The text, in UTF-8.
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    enum class Retry { No, Yes };
    AgentError(Case kind, const QString &text, Retry retry);

    Case m_case;
    bool m_mayRetry;
    QString m_text;
    QByteArray m_utf8;
    AgentSpend m_spent;
    std::optional<UsageLimit> m_limit;
};

} // namespace vorle
