#pragma once

#include <QString>

#include <string_view>

namespace vorle {

/// What a feed's text may still hold once its XML is read.
enum class Markup {
    None,   ///< it is what it says
    Inline, ///< references and the tags of a title (<em>, <code>, …); other "<" mean themselves
    Any     ///< a piece of HTML
};

/// Whether an HTML element named so (in lower case) stands within a line.
bool isInlineElement(std::string_view name);

/// How much of a text is read, in bytes.
inline constexpr std::size_t plainTextBytes = 4'096;

/// A stranger's UTF-8 text, its last tag perhaps cut, as plain text on one line: without tags, its
/// references decoded in one pass, blanks and control characters as single blanks, at most
/// `maxCharacters` of it. Linear. Pure, any thread.
QString plainText(std::string_view utf8, Markup markup, qsizetype maxCharacters);

} // namespace vorle
