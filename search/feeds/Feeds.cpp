#include "search/feeds/Feeds.h"

#include "base/Ascii.h"
#include "base/Text.h"
#include "base/WebLink.h"
#include "search/web/AttributeReader.h"
#include "search/web/Browser.h"
#include "search/web/Charset.h"
#include "search/web/Links.h"

#include <algorithm>
#include <string_view>

namespace vorle {

namespace {

constexpr std::chrono::seconds deadline{12};
constexpr qint64 pageBytes = 3'000'000;
constexpr qsizetype maxConcurrentSites = 32;

constexpr int newestItems = 15;
constexpr int checkDays = 7;
constexpr qint64 clockSlackSeconds = 86'400; ///< sites get their own time zone wrong

bool isWordCharacter(char c) { return ascii::isLetter(c) || ascii::isDigit(c) || c == '_'; }

/// Where `word` (lower case) stands in `text`, from `from` on, whatever its case.
std::size_t findWord(std::string_view text, std::string_view word, std::size_t from) {
    const auto found = std::search(
        text.begin() + static_cast<std::ptrdiff_t>(std::min(from, text.size())), text.end(),
        word.begin(), word.end(), [](char a, char b) { return ascii::lower(a) == b; });
    return found == text.end() ? std::string_view::npos
                               : static_cast<std::size_t>(found - text.begin());
}

/// The first values that are not empty.
struct LinkElement {
    std::string_view rel;
    std::string_view type;
    std::string_view href;
};

/// Reads what stands between "<" and ">".
LinkElement linkElement(std::string_view tag) {
    LinkElement link;
    html::AttributeReader attributes(tag, std::string_view("link").size());
    while (const auto attribute = attributes.next()) {
        for (const auto &[name, value] :
             {std::pair("rel", &link.rel), std::pair("type", &link.type),
              std::pair("href", &link.href)}) {
            if (value->empty() && attribute->is(name)) {
                *value = attribute->value;
            }
        }
    }
    return link;
}

bool holds(std::string_view value, std::string_view word) {
    return findWord(value, word, 0) != std::string_view::npos;
}

/// What a run takes of a feed's items.
QList<FeedItem> recentItems(QList<FeedItem> items, const QSet<QString> &known,
                            const QDateTime &now) {
    QList<FeedItem> recent;
    QSet<QString> seen;
    const QDateTime oldest = now.addDays(-newestDays);
    const QDateTime latest = now.addSecs(clockSlackSeconds);
    for (FeedItem &item : items) {
        if (item.date && *item.date > latest) {
            item.date.reset(); // a date that cannot be is none
        }
        if (item.date && *item.date < oldest) {
            continue;
        }
        const auto clean = WebLink::from(item.link);
        if (!clean) {
            continue;
        }
        item.link = clean->text();
        item.title = withoutHidden(item.title);
        item.summary = withoutHidden(item.summary);
        const QString link = canonicalLink(item.link);
        if (seen.contains(link) || known.contains(link)) {
            continue;
        }
        seen.insert(link);
        recent.append(std::move(item));
    }
    std::ranges::stable_sort(recent, [](const FeedItem &a, const FeedItem &b) {
        return a.date && (!b.date || *a.date > *b.date);
    });
    recent.resize(std::min<qsizetype>(recent.size(), newestItems));
    return recent;
}

} // namespace

std::optional<QString> announcedFeed(QByteArrayView page, const QUrl &pageAddress) {
    const std::string_view text(page.data(), static_cast<std::size_t>(page.size()));
    std::size_t at = 0;
    while ((at = text.find('<', at)) != std::string_view::npos) {
        const std::string_view rest = text.substr(++at);
        const bool opens =
            rest.size() > 4 && holds(rest.substr(0, 4), "link") && !isWordCharacter(rest[4]);
        if (!opens) {
            continue;
        }
        const std::size_t end = rest.find('>');
        if (end == std::string_view::npos) {
            break;
        }
        const std::string_view tag = rest.substr(0, end);
        at += end;
        const LinkElement link = linkElement(tag);
        if (!holds(link.rel, "alternate") || link.href.empty() ||
            (!holds(link.type, "rss+xml") && !holds(link.type, "atom+xml"))) {
            continue;
        }
        if (const auto feed = WebLink::resolved(html::addressIn(link.href), pageAddress)) {
            return feed->text();
        }
    }
    return std::nullopt;
}

Task<HttpResponse> Feeds::fetch(QUrl url, qint64 maxBytes, CancelToken cancel, Reach reach) {
    HttpRequest request;
    request.url = std::move(url);
    request.userAgent = browserUserAgent;
    request.maxBytes = maxBytes;
    request.deadline = deadline;
    request.reach = reach;
    return m_http.get(std::move(request), std::move(cancel));
}

Task<Feeds::Discovery> Feeds::look(QString siteAddress, CancelToken cancel, Reach reach) {
    cancel.throwIfCancelled();
    const auto site = WebLink::typed(siteAddress, WebLink::Host::Any);
    if (!site) {
        co_return Discovery{};
    }
    const HttpResponse response = co_await fetch(site->url(), pageBytes, cancel, reach);
    if (!response.ok()) {
        co_return Discovery{};
    }
    // A feed's own address is one, whatever else the feed announces.
    auto feed = co_await onPool([response, itself = site->text()]() -> std::optional<QString> {
        if (parseFeed(response.body, response.contentType, response.url, {})) {
            return itself;
        }
        const auto page = decodeText(response.body, response.contentType);
        return page ? announcedFeed(*page, response.url) : std::nullopt;
    });
    cancel.throwIfCancelled();
    const FeedOutcome outcome = feed ? FeedOutcome::Read : FeedOutcome::NoFeed;
    co_return Discovery{outcome, std::move(feed)};
}

Task<std::optional<QString>> Feeds::discover(QString siteAddress, CancelToken cancel, Reach reach) {
    const Discovery found = co_await look(std::move(siteAddress), std::move(cancel), reach);
    co_return found.feed;
}

Task<FeedReading> Feeds::read(QString feedAddress, QString site, CancelToken cancel, Reach reach) {
    cancel.throwIfCancelled();
    const auto feed = WebLink::typed(feedAddress, WebLink::Host::Any);
    if (!feed) {
        co_return FeedReading{};
    }
    const HttpResponse response = co_await fetch(feed->url(), maxFeedBytes, cancel, reach);
    if (!response.ok()) {
        FeedReading unread;
        unread.gone = response.status == 404 || response.status == 410;
        co_return unread;
    }
    auto items = co_await onPool([response, site] {
        return parseFeed(response.body, response.contentType, response.url, site);
    });
    cancel.throwIfCancelled();
    if (!items) {
        co_return FeedReading{FeedOutcome::NoFeed, {}, false};
    }
    co_return FeedReading{FeedOutcome::Read, *std::move(items), false};
}

Task<Feeds::SiteRun> Feeds::readSite(PrioritySite site, CancelToken cancel) {
    SiteRun run{std::move(site), {}};
    FeedReading &reading = run.reading;
    const QDateTime now = m_clock.now();
    const bool lately =
        run.site.checked && *run.site.checked <= now && run.site.checked->addDays(checkDays) > now;
    if (run.site.feed) {
        reading = co_await read(*run.site.feed, run.site.address, cancel);
    } else if (lately) {
        reading.outcome = FeedOutcome::NoFeed;
    }
    if (lately && (!run.site.feed || reading.outcome == FeedOutcome::Read)) {
        co_return run;
    }
    const Discovery found = co_await look(run.site.address, cancel, Reach::PublicOnly);
    if (found.outcome == FeedOutcome::Unreachable) {
        co_return run;
    }
    run.site.checked = now;
    if (found.feed && found.feed != run.site.feed) {
        FeedReading another = co_await read(*found.feed, run.site.address, cancel);
        if (another.outcome == FeedOutcome::Read || reading.outcome != FeedOutcome::Read) {
            run.site.feed = found.feed;
            reading = std::move(another);
        }
    } else if (!found.feed && (!run.site.feed || reading.isNoFeed())) {
        run.site.feed.reset();
        reading.outcome = FeedOutcome::NoFeed;
    }
    co_return run;
}

Task<FeedsForRun> Feeds::itemsForRun(QList<PrioritySite> sites, QSet<QString> knownCanonicalLinks,
                                     CancelToken cancel) {
    cancel.throwIfCancelled();
    std::vector<SiteRun> runs(static_cast<std::size_t>(sites.size()));
    const auto readOne = [](Feeds *self, PrioritySite site, CancelToken token,
                            SiteRun *out) -> Task<> {
        *out = co_await self->readSite(std::move(site), std::move(token));
    };
    co_await forEachBounded(sites.size(), maxConcurrentSites, [&](qsizetype i) {
        return readOne(this, sites[i], cancel, &runs[static_cast<std::size_t>(i)]);
    });
    FeedsForRun all;
    const QDateTime now = m_clock.now();
    for (SiteRun &run : runs) {
        const QList<FeedItem> recent =
            recentItems(std::move(run.reading.items), knownCanonicalLinks, now);
        all.reports.append({run.site.address, run.reading.outcome, recent.size()});
        all.items += recent;
        all.sites.append(std::move(run.site));
    }
    co_return all;
}

} // namespace vorle
