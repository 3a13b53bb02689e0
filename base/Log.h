#pragma once

#include <QString>
#include <QStringList>

namespace vorle {

/// Writes one line to the system log (standard error on Linux), prefixed "vorle: ".
/// Never give it page text, a prompt or a secret. Any thread.
void logLine(const QString &text);

/// The last lines of this process, oldest first, 50 at most, each cut to 500 characters; without
/// the prefix. Any thread.
QStringList recentLogLines();

} // namespace vorle
