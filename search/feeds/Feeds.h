#pragma once

#include "base/Clock.h"
#include "base/HttpClient.h"
#include "core/PrioritySite.h"
#include "search/feeds/FeedParser.h"

#include <QSet>

namespace vorle {

/// How the reading of a feed, or of a site through its feed, ended.
enum class FeedOutcome {
    Read,        ///< the feed was read, be it without any item
    Unreachable, ///< no answer, an error status, or an address that may not be reached
    NoFeed       ///< the site announces none, or what was served is none
};

/// An older item of a feed is none of a run's.
inline constexpr int newestDays = 31;

struct FeedReading {
    FeedOutcome outcome = FeedOutcome::Unreachable;
    QList<FeedItem> items; ///< empty unless read
    bool gone = false;     ///< the answer was that there is nothing any more (404, 410)

    /// Whether something answered there, and it is no feed. What merely failed may read tomorrow.
    bool isNoFeed() const { return gone || outcome == FeedOutcome::NoFeed; }
    bool operator==(const FeedReading &) const = default;
};

/// What became of one site, for the report of a run.
struct SiteFeedResult {
    QString address; ///< as the user typed it
    FeedOutcome outcome = FeedOutcome::Unreachable;
    qsizetype items = 0; ///< handed to the screening

    bool operator==(const SiteFeedResult &) const = default;
};

struct FeedsForRun {
    QList<FeedItem> items;         ///< site by site, in the sites' order, newest first in each
    QList<PrioritySite> sites;     ///< those given, with what discovery found: for Preferences
    QList<SiteFeedResult> reports; ///< one for each site
};

/// The address of the first feed that a page announces in a link element (rel holding "alternate",
/// type holding "rss+xml" or "atom+xml"), resolved against the page's own. The values may stand
/// without quotes, as HTML allows and as compressed pages have them. Linear in the page. Pure, any
/// thread.
std::optional<QString> announcedFeed(QByteArrayView page, const QUrl &pageAddress);

/// The feeds of trusted sites. Main thread; parsing runs on the thread pool. Nothing the network
/// or a site does throws: only Cancelled leaves these functions. The client, the clock and this
/// object must outlive every call under way.
class Feeds {
public:
    Feeds(HttpClient &http, const Clock &clock) : m_http(http), m_clock(clock) {}

    /// The feed that a site's page announces, or the address itself when a feed answers there;
    /// nothing when there is neither, or the page cannot be read.
    /// @throws Cancelled
    Task<std::optional<QString>> discover(QString siteAddress, CancelToken cancel = {},
                                          Reach reach = Reach::PublicOnly);

    /// All items of a feed. @throws Cancelled
    Task<FeedReading> read(QString feedAddress, QString site, CancelToken cancel = {},
                           Reach reach = Reach::PublicOnly);

    /// What a run screens: all sites in parallel, of each feed at most the 15 newest items of the
    /// last 31 days whose link is new; those without a date come last. A date in a future that
    /// cannot be is none. `knownCanonicalLinks` holds links in the form of canonicalLink().
    ///
    /// A site is searched for a feed when it never was, or not for a week; one whose feed no longer
    /// reads is searched again at once. A feed that reads gives way only to another that reads; one
    /// that does not, to whatever the site announces now; when it announces none, a feed that
    /// merely failed is kept, one that is gone or no feed forgotten. What could not be reached
    /// counts as not searched. @throws Cancelled
    Task<FeedsForRun> itemsForRun(QList<PrioritySite> sites, QSet<QString> knownCanonicalLinks,
                                  CancelToken cancel = {});

private:
    struct Discovery {
        FeedOutcome outcome = FeedOutcome::Unreachable; ///< of the site's page
        std::optional<QString> feed;
    };
    struct SiteRun {
        PrioritySite site;
        FeedReading reading;
    };

    Task<HttpResponse> fetch(QUrl url, qint64 maxBytes, CancelToken cancel, Reach reach);
    Task<Discovery> look(QString siteAddress, CancelToken cancel, Reach reach);
    Task<SiteRun> readSite(PrioritySite site, CancelToken cancel);

    HttpClient &m_http;
    const Clock &m_clock;
};

} // namespace vorle
