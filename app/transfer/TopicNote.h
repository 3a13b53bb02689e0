#pragma once

#include "core/Topic.h"

#include <QByteArray>
#include <QTimeZone>

namespace vorle {

/// A topic as a note in Markdown, in UTF-8: its facts between "---" lines as YAML ("front matter"),
/// then its words, the user's note, its reading notes and its sources. The same topic gives the
/// same bytes, whatever the day. What strangers wrote stands in it as words, never as markup, and
/// links lead to web addresses alone. `zone` turns moments into days. Pure, any thread.
QByteArray topicNote(const Topic &topic, const QTimeZone &zone = QTimeZone::systemTimeZone());

} // namespace vorle
