#pragma once

#include <QByteArray>

namespace vorle {

/// The XML of a feed from its root element on, as UTF-8 an XML parser gets to the end of; empty
/// when there is no element at all.
///
/// Decoded first: what is UTF-8 is read as such whatever it says (a wrong declaration is the most
/// common of all), the rest by its byte order mark, its declaration, its Content-Type, or else as
/// Windows-1252. What stands before the root element goes with its declaration and its document
/// type, so that no entity of the document's own exists. Then mended: characters XML knows not
/// become blanks, HTML's names and numbers their characters, and an ampersand or a "<" that opens
/// nothing means itself; comments, instructions and what passes 5,000 bytes of a text are left out.
/// The whole ends where a section or a comment never closes, and before a tag with hundreds of
/// attributes, which libxml2 would compare each with each.
///
/// Linear. Pure, any thread; `bytes` must outlive the result, which may share them.
QByteArray feedDocument(QByteArrayView bytes, QByteArrayView contentType);

} // namespace vorle
