#pragma once

#include <QString>

namespace vorle {

/// `text` as one word of a shell: as it is when no shell reads anything into it, else between
/// single quotes, which end and begin again around each one in it. Right for sh, bash, dash, ksh
/// and zsh (with its RC_QUOTES too), whatever the text holds but a zero. Pure.
QString shellWord(const QString &text);

} // namespace vorle
