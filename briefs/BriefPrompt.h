#pragma once

#include "core/Settings.h"
#include "core/Topic.h"

#include <QDate>
#include <QString>

namespace vorle {

/// What the agent reads to write one topic's note: `instruction` with @TODAY, @PROFILE, @PROJECT,
/// @TOPIC, @SOURCES and @TEXT replaced in one pass. What strangers wrote is kept apart: the text
/// read earlier stands between lines of three double quotes, and fences and headings inside it are
/// defused; every other value is held to one line. Without such a text a line asks the agent to
/// search the web for it. Whatever the topic holds, what is put in takes at most 110,000 bytes with
/// the marks that an agent's call adds, which with the instruction stays under what is accepted as
/// an argument (131,071 bytes). Pure, any thread.
QString briefPrompt(const QString &instruction, const QDate &today, const Settings &settings,
                    const Topic &topic);

} // namespace vorle
