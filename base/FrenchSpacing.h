#pragma once

#include <QString>

namespace vorle {

/// A French text as it is shown: blanks before ; ! ? » and after « become narrow no-break spaces
/// (U+202F), those before a colon no-break ones (U+00A0), so that no line begins with a sign; a
/// number keeps to its unit and its thousands together ("180 Ko", "10 000"). Guillemets get their
/// blanks where they have none; no other blank is invented: what has none may be a word of another
/// language.
///
/// Code (between backquotes), links and words with a sign inside ("8:00", "std::vec", "?a=b") stay
/// as they are. To be used where a text is shown, not where it is kept: done twice it gives the
/// same. Linear. Pure, any thread.
QString frenchSpacing(const QString &text);

} // namespace vorle
