#pragma once

#include "agents/AgentSpend.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace vorle {

/// What a call to an agent gave.
struct AgentResult {
    /// The answer, a JSON value not yet held against the schema. Escaped halves of characters
    /// are U+FFFD; control characters are left out.
    QByteArray json;
    AgentSpend spent;
};

/// The JSON Schema as Codex wants it: every property required, those that were optional (and have
/// a single type) made nullable instead, nothing else allowed, at every depth. Keys come out in
/// alphabetical order. @throws AgentError (missing instruction) when `schema` is no JSON object
QString makeStrict(const QString &schema);

/// The answer inside Claude Code's result object. Any thread.
/// @throws AgentError with what the call took: the agent's own words when the object says it
/// failed,
///   and the limit that they tell of; unreadable when there is no object or no answer in it
AgentResult unwrapClaude(const QByteArray &output);

/// The content of Codex's answer file. Any thread. @throws AgentError (unreadable)
AgentResult unwrapCodex(const QByteArray &answer);

/// What Claude Code says of a call that failed: in its result object, else in what it printed in
/// the place of one.
struct ClaudeFailure {
    QString text; ///< the object's result or its errors, or empty; all that is no object
    AgentSpend spent;
};
ClaudeFailure claudeFailure(const QByteArray &output);

/// The tokens that Codex says, at the end of what it printed, it used; nothing where it does not.
std::optional<qint64> codexTokens(const QString &printed);

} // namespace vorle
