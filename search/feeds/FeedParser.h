#pragma once

#include <QByteArrayView>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace vorle {

/// One article a feed announces. All of it but `site` was written by a stranger.
struct FeedItem {
    QString site;  ///< the trusted site, as the user typed it
    QString title; ///< plain text on one line, may be empty
    QString link;  ///< absolute, http or https, no longer than a WebLink
    std::optional<QDateTime> date;
    QString summary; ///< plain text on one line, at most 400 characters, may be empty

    bool operator==(const FeedItem &) const = default;
};

/// What is read of a feed, in bytes; the rest is as if it had never been sent.
inline constexpr qsizetype maxFeedBytes = 10'000'000;

/// The items of a feed (RSS 0.9x, 1.0 and 2.0, Atom 0.3 and 1.0), in its own order; nothing when
/// the bytes are no feed (a page, another format). Reads what feeds hold rather than what they
/// should: whatever encoding they announce, entities no document type declares, bare ampersands,
/// undeclared prefixes, elements left open, a file cut short (its last whole item ends the list).
///
/// An item is kept when it has an http(s) link: the text of its `link` or the address of an
/// Atom one, "alternate" before the other relations; relative ones are resolved against xml:base
/// and `address`, where the feed was read. A permanent link in a guid is none.
///
/// No document type, no entity of the document's own and nothing outside it is ever read; items
/// (2,000), depth, texts, bases, attributes, namespaces and different names are bounded: the list
/// ends where one is passed. The time is linear in the bytes. Pure, any thread.
std::optional<QList<FeedItem>> parseFeed(QByteArrayView bytes, QByteArrayView contentType,
                                         const QUrl &address, const QString &site);

} // namespace vorle
