#pragma once

#include <QString>
#include <QStringList>

#include <string>

namespace vorle::test {

/// Texts that strangers might write to leave the place a prompt gives them: every sign that some
/// reader takes for a line break, times every sign that could be taken for a fence of quotes or
/// backquotes, times what may pass for a heading. Each holds the word "goule". Several hundred,
/// always the same.
QStringList hostileTexts();

/// `text` as the most gullible of readers sees it: every line break of Unicode is one, no invisible
/// sign is seen, signs of private use stand for the ASCII they resemble, accents are overlooked,
/// and what looks like a double quote, a backquote or a hash is one.
QString gullible(const QString &text);

/// Whether that reader takes the line for a heading.
bool looksLikeHeading(const QString &line);

/// The shape of what that reader sees outside of any block: its headings, how its other lines
/// begin, and where blocks stand.
std::string shapeOf(const QString &prompt);

/// The identifiers of the blocks it sees.
QStringList blockIds(const QString &prompt);

} // namespace vorle::test
