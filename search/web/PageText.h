#pragma once

#include "core/Judgment.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace vorle {

/// The most of a page that is looked at, in bytes.
inline constexpr qsizetype maxPageBytes = 3'000'000;
/// A body of fewer characters (as a reader sees them) does not count as read.
inline constexpr qsizetype readableCharacters = 600;
/// The most characters (as a reader sees them) of a body that are kept.
inline constexpr qsizetype maxBodyCharacters = 8'000;
/// The most characters (as a reader sees them) of a title or a description that are kept.
inline constexpr qsizetype maxLineCharacters = 2'000;
/// The most bytes a kept character takes on average. No writing comes near it: what does piles up
/// marks on its letters, of which one character holds as many as it likes.
inline constexpr qsizetype bytesPerCharacter = 32;

/// What a page says. A blank title or description is no title or description.
struct PageText {
    std::optional<QString> title;       ///< at most maxLineCharacters
    std::optional<QString> description; ///< at most maxLineCharacters
    /// The body in UTF-8, at most maxBodyCharacters. Empty unless it was read, but for plain text:
    /// of a short one, which has no title to be known by, it is all there is.
    QByteArray text;
    ReadLevel level = ReadLevel::None;

    bool operator==(const PageText &) const = default;
};

/// Whether the bytes of a page are all there.
enum class PageExtent {
    Whole,
    Cut ///< the page went on: what is readable of it is "seen", not "full"
};

/// Reads a page out of its bytes and its Content-Type header (which may be empty). Pure, any
/// thread; takes time linear in the page whatever it holds, some milliseconds for a large one, so
/// that it belongs on the thread pool. Never fails: what is no text (pictures, archives, bytes
/// with NULs) gives ReadLevel::None.
///
/// Plain text and Markdown are kept as they are, blanks tidied. Anything else is read as HTML:
/// the title and description from the meta elements or the title element, the body from the first
/// article, else the first main, else the whole page, without scripts, menus and forms.
/// Names of elements, attributes and meta keys match in either case, as in HTML.
PageText extractPage(QByteArrayView bytes, QByteArrayView contentType,
                     PageExtent extent = PageExtent::Whole);

} // namespace vorle
