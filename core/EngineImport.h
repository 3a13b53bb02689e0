#pragma once

#include "core/Topic.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

namespace vorle {

/// Turns a saved answer of a search run (the agent's result object, whose "structured_output"
/// holds the "sujets", with French keys) into topics of `project` found at `now`, waiting for
/// triage. Each gets a fresh identity. Texts are kept without what nobody sees; a source whose link
/// is none (see WebLink) is left out. Without "minutes", a flaw ("faille") or a break ("casse")
/// asks 15 minutes, anything else 30. All or nothing. Any thread.
/// @throws json::DecodeError when a required key is missing or of the wrong type
QList<Topic> importTopics(const QByteArray &data, const QString &project, const QDateTime &now);

} // namespace vorle
