#pragma once

#include <QString>

namespace vorle {

/// What kind of error a text tells: our own sentence where it begins with one, and words that are
/// known to be of errors, wherever they stand ("rate limit", "429", "no space left on device").
/// Nothing else of the text. Pure, any thread.
QString errorKind(const QString &text);

} // namespace vorle
