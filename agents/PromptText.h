#pragma once

#include <QDate>
#include <QList>
#include <QString>

#include <utility>

namespace vorle {

/// How texts of strangers are put into a prompt without becoming a part of it. Pure, any thread.

/// Held to one line of at most `maxCharacters` characters and eight bytes each on the whole
/// (characters may be of any size): line breaks and other control characters become blanks.
QString oneLine(const QString &text, qsizetype maxCharacters);

/// Fit to stand between lines of three double quotes: no run of quotes can close the fence, and no
/// line can pass for a heading.
QString defused(const QString &text);

/// `instruction` with every placeholder replaced by its value in one pass over it, so that none of
/// these words inside a value is ever taken for a placeholder. Of two placeholders of which one
/// begins the other, the longer comes first in the list.
QString replacedOnce(const QString &instruction, const QList<std::pair<QString, QString>> &values);

/// Month name, day, year in American English ("November 21, 2026"), as prompts write dates.
QString promptDate(const QDate &date);

} // namespace vorle
