#pragma once

#include <QDate>
#include <QList>
#include <QString>

#include <utility>

namespace vorle {

/// How texts of strangers are put into a prompt without becoming a part of it. Pure, any thread.

/// The first two leave out what nobody sees (marks of direction, zero-width signs, tags) and what
/// only a font of its own draws (private use), and make apostrophes of three double quotes in a
/// row, or of signs that look like them, with accents or without: no text can close a fence.

/// Held to one line of at most `maxCharacters` characters and eight bytes each on the whole
/// (characters may be of any size): line breaks and other control characters become blanks, and
/// three backquotes in a row apostrophes.
QString oneLine(const QString &text, qsizetype maxCharacters);

/// Fit to stand between lines of three double quotes: no line can pass for a heading.
/// Takes at most about twice the bytes of `text`.
QString escapedForPrompt(const QString &text);

/// A file's text between two lines of backquotes: three, or one more than stand in a row anywhere
/// in it, so that no line of it can end the block. The text stays as it is but for what nobody
/// sees.
QString fencedForPrompt(const QString &text);

/// The bytes of UTF-8 that `text` may take of a prompt's limit: each "@" counts 3 more, since an
/// agent may be given a mark before it (see EngineAgent::run).
qsizetype promptSize(QStringView text);

/// A prefix of `text` of that size at most, which cuts no code point.
QStringView promptPrefix(QStringView text, qsizetype maxBytes);

/// `instruction` with every placeholder replaced by its value in one pass over it, so that none of
/// these words inside a value is ever taken for a placeholder. Of two placeholders of which one
/// begins the other, the longer comes first in the list.
QString replacedOnce(const QString &instruction, const QList<std::pair<QString, QString>> &values);

/// Month name, day, year in American English ("November 21, 2026"), as prompts write dates.
QString promptDate(const QDate &date);

} // namespace vorle
