#pragma once

#include <QByteArray>

namespace vorle {

/// The XML of a feed from its root element on, as UTF-8 an XML parser gets to the end of; empty
/// when there is no element at all.
///
/// Decoded first: what is UTF-8 is read as such whatever it says (a wrong declaration is the most
/// common of all), the rest by its byte order mark, its declaration, its Content-Type, or else as
/// Windows-1252. What stands before the root element goes with its declaration and its document
/// type, so that no entity of the document's own exists. Characters XML knows not become blanks;
/// the rest is mended by mendedXml().
///
/// Linear. Pure, any thread; `bytes` must outlive the result, which may share them.
QByteArray feedDocument(QByteArrayView bytes, QByteArrayView contentType);

} // namespace vorle
