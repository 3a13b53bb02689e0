#pragma once

#include <QByteArray>
#include <QString>

namespace vorle {

/// What an agent prints is data: these take out of it what would act on a terminal, hide in a
/// line or give a secret away, before it is shown, logged or kept. Any thread.

/// Words of the agent for people: without escape sequences, control characters (line breaks and
/// tabs stay) and characters nobody sees, and with "[clé masquée]" in the place of what looks like
/// a key, a token or a password. Everything else is as it was. Takes time in proportion to `text`.
QString sanitized(const QString &text);

/// The same for the texts inside a JSON value, which stays one: without escape sequences and
/// control characters. Secrets are left to whoever reads it.
QByteArray sanitizedJson(const QByteArray &json);

} // namespace vorle
