#pragma once

#include "base/FrenchSpacing.h"
#include "base/Text.h"

namespace vorle {

/// Words of a page or of an agent as they are shown outside of the window: on one line of that many
/// characters at most, without signs that nobody sees, set as French sets its punctuation. Pure.
inline QString shownLine(const QString &words, qsizetype characters) {
    return frenchSpacing(clampedLine(words, characters));
}

} // namespace vorle
