#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace vorle {

/// What a call to an agent gave.
struct AgentResult {
    /// The answer, a JSON value not yet held against the schema. Escaped halves of characters
    /// are U+FFFD; control characters are left out.
    QByteArray json;
    std::optional<double> costUSD; ///< only Claude Code tells; finite, 0 or more
};

/// The JSON Schema as Codex wants it: every property required, those that were optional (and have
/// a single type) made nullable instead, nothing else allowed, at every depth. Keys come out in
/// alphabetical order. @throws AgentError (missing instruction) when `schema` is no JSON object
QString makeStrict(const QString &schema);

/// The answer inside Claude Code's result object. Any thread.
/// @throws AgentError with the call's cost: the agent's own words when the object says it failed,
///   unreadable when there is no object or no answer in it
AgentResult unwrapClaude(const QByteArray &output);

/// The content of Codex's answer file. Any thread. @throws AgentError (unreadable)
AgentResult unwrapCodex(const QByteArray &answer);

/// What Claude Code's result object, if `output` is one, says of a call that failed.
struct ClaudeFailure {
    QString text; ///< its result or its errors, or empty
    std::optional<double> costUSD;
};
ClaudeFailure claudeFailure(const QByteArray &output);

} // namespace vorle
