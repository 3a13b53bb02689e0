#pragma once

#include <QByteArray>
#include <QString>

namespace vorle {

/// Texts as a searcher compares them: without case, accents, ligatures ("œ" is "oe"), soft hyphens
/// or the shape of apostrophes and blanks. Pure functions, any thread.

/// UTF-8 in and out; bytes that are no UTF-8 are kept as they are.
QByteArray foldedForSearch(QByteArrayView utf8);
QByteArray foldedForSearch(QStringView text);

/// Whether a byte of a folded text belongs to a word: letters, digits, whatever is not ASCII.
inline bool belongsToWord(char c) {
    const auto byte = static_cast<uchar>(c);
    return byte >= 0x80 || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9');
}

/// Where in `utf8` the character stands that gives the byte at `offset` of its folded form; the
/// end of `utf8` past it.
qsizetype unfoldedOffset(QByteArrayView utf8, qsizetype offset);

} // namespace vorle
