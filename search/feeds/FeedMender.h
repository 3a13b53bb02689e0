#pragma once

#include <QByteArray>

#include <string_view>

namespace vorle {

/// The XML of a feed, from its root element on, so that libxml2 gets to the end of it: HTML's names
/// and numbers become their characters, an ampersand or a "<" that opens nothing means itself;
/// comments, instructions and what passes 5,000 bytes of a text are left out. The whole ends where
/// a section or a comment never closes, and before a tag with hundreds of attributes, which libxml2
/// would compare each with each.
///
/// `text` is UTF-8 without what XML cannot hold, and must outlive the result, which shares what
/// needed no mending. Linear. Pure, any thread.
QByteArray mendedXml(std::string_view text);

} // namespace vorle
