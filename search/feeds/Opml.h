#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace vorle {

/// The most bytes of a list of feeds that is read, and the most sites taken out of one.
inline constexpr qint64 maxOpmlBytes = 20'000'000;
inline constexpr qsizetype maxOpmlSites = 2'000;

/// A site of a list of feeds, as feed readers exchange them.
struct OpmlSite {
    QString title; ///< on one line; may be empty
    QString page;  ///< its address; may be empty
    QString feed;  ///< its feed's address; may be empty

    bool operator==(const OpmlSite &) const = default;
};

struct OpmlList {
    QList<OpmlSite> sites;    ///< in their order, at most `maxOpmlSites`; each has an address
    qsizetype unreadable = 0; ///< outlines with an address that is none of the web
    bool cut = false;         ///< there were more
};

/// The sites of an OPML list, whatever folders they lie in; nothing when the text is none. What is
/// malformed is read as far as it goes. Linear; no document type, no entity of its own. Pure, any
/// thread.
std::optional<OpmlList> readOpml(QByteArrayView bytes);

/// An OPML 2.0 list that readOpml() and feed readers take. A site without a feed has its page for
/// one: readers look there themselves.
QByteArray writeOpml(const QList<OpmlSite> &sites, const QDateTime &now);

} // namespace vorle
