#pragma once

#include <QString>
#include <QStringView>

namespace vorle {

/// Whether `c` is a blank as regular expressions understand it in Unicode mode: the ASCII blanks,
/// the next-line character and every code point with the White_Space property.
bool isBlank(char16_t c);

/// `text` without blanks at either end.
QStringView trimmed(QStringView text);

/// The number of characters a reader sees (extended grapheme clusters, Unicode annex 29).
qsizetype characterCount(QStringView text);

/// The first `count` characters a reader sees; all of `text` when it has no more. Never cuts a
/// cluster. Looks no further into `text` than it must.
QStringView firstCharacters(QStringView text, qsizetype count);

/// The last `count` characters a reader sees.
QStringView lastCharacters(QStringView text, qsizetype count);

/// Decodes the HTML entities of web pages in one pass, so that "&amp;lt;" gives "&lt;": the names
/// amp, lt, gt, quot, apos, nbsp, rsquo, lsquo, hellip, mdash and ndash, and every numeric one
/// ("&#8217;", "&#x2019;"). A number that is no Unicode scalar value gives U+FFFD; an unknown
/// name stays as it is.
QString decodeEntities(QStringView text);

/// `text` without the signs of category Cf, which nobody sees: they turn the direction of what
/// follows, or hide words. What a script needs stays: the joiners behind a letter of a script that
/// joins (Arabic, Indic) or behind an emoji, and the number signs that are drawn.
QString withoutHidden(const QString &text);

/// A stranger's text as it may be kept: without hidden signs and control characters, every line
/// break as '\n', tabs as they are, no blank line at either end; at most `maxCharacters`
/// characters, and eight bytes each on the whole (characters may be of any size).
QString clampedLines(const QString &text, qsizetype maxCharacters);

/// The same on one line: runs of blanks are one, a no-break space stays what it is.
QString clampedLine(const QString &text, qsizetype maxCharacters);

/// The longest prefix of `text` that takes at most `maxBytes` in UTF-8 and does not cut a code
/// point.
QStringView utf8Prefix(QStringView text, qsizetype maxBytes);

/// The size of `text` in UTF-8, in bytes; a lone surrogate counts as U+FFFD, 3 bytes.
qsizetype utf8Size(QStringView text);

} // namespace vorle
