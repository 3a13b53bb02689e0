#pragma once

#include <QString>

namespace vorle {

/// Writes one line to the system log (standard error on Linux), prefixed "vorle: ".
/// Never give it page text, a prompt or a secret. Any thread.
void logLine(const QString &text);

} // namespace vorle
