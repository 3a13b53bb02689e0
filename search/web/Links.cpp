#include "search/web/Links.h"

#include "base/Text.h"
#include "base/WebLink.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace vorle {

namespace {

using Words = std::initializer_list<QStringView>;

bool isOneOf(QStringView word, Words words) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

/// Without the query items whose name, in lower case, is `unwanted`.
template <class Predicate>
void dropQueryItems(QUrl &url, Predicate unwanted) {
    if (!url.hasQuery()) {
        return;
    }
    QStringList items = url.query(QUrl::FullyEncoded).split(u'&');
    const auto dropped = items.removeIf(
        [&](const QString &item) { return unwanted(item.section(u'=', 0, 0).toLower()); });
    if (dropped > 0) {
        url.setQuery(items.isEmpty() ? QString() : items.join(u'&'));
    }
}

bool isCampaignItem(const QString &name) { return name.startsWith(u"utm_"); }

bool isTrackingItem(const QString &name) {
    return isCampaignItem(name) ||
           isOneOf(name, {u"fbclid",  u"gclid",       u"dclid",      u"gbraid",  u"wbraid",
                          u"msclkid", u"yclid",       u"twclid",     u"igshid",  u"igsh",
                          u"mc_cid",  u"mc_eid",      u"_hsenc",     u"_hsmi",   u"mkt_tok",
                          u"vero_id", u"oly_anon_id", u"oly_enc_id", u"ref_src", u"ref_url"});
}

bool isVideo(const QString &site, const QString &path) {
    return isOneOf(site, {u"youtube.com", u"youtu.be", u"music.youtube.com", u"vimeo.com",
                          u"player.vimeo.com", u"dailymotion.com", u"dai.ly", u"twitch.tv"}) ||
           (site == u"instagram.com" && path.contains(u"/reel"));
}

bool isPackage(const QString &site) {
    return isOneOf(site, {u"npmjs.com", u"npmjs.org", u"pypi.org", u"crates.io", u"rubygems.org",
                          u"packagist.org", u"nuget.org", u"pkg.go.dev", u"hex.pm", u"pub.dev",
                          u"jsr.io", u"mvnrepository.com", u"search.maven.org",
                          u"central.sonatype.com", u"hackage.haskell.org", u"cocoapods.org",
                          u"swiftpackageindex.com", u"metacpan.org", u"formulae.brew.sh"});
}

bool isForge(const QString &site) {
    return isOneOf(site, {u"github.com", u"gitlab.com", u"codeberg.org", u"bitbucket.org"});
}

/// The path behind a repository's own, between slashes and in lower case. Where a forge nests
/// groups, "-" tells them from its pages.
QString pageOfRepository(const QStringList &segments) {
    const qsizetype dash = segments.indexOf(QStringLiteral("-"));
    const QString page = segments.mid(dash > 1 ? dash + 1 : 2).join(u'/').toLower();
    return page.isEmpty() ? QStringLiteral("/") : u'/' + page + u'/';
}

bool isDiscussion(const QString &site, const QStringList &segments) {
    const auto under = [&](QStringView domain) {
        return site == domain || site.endsWith(u'.' + domain.toString());
    };
    const Words forums{u"reddit.com",        u"news.ycombinator.com", u"lobste.rs",
                       u"stackoverflow.com", u"stackexchange.com",    u"superuser.com",
                       u"serverfault.com",   u"askubuntu.com"};
    if (std::any_of(forums.begin(), forums.end(), under)) {
        return true;
    }
    const QString machine = site.section(u'.', 0, 0);
    if (isOneOf(machine, {u"forum", u"forums", u"discuss", u"discourse", u"community"})) {
        return true;
    }
    return isForge(site) && segments.size() > 2 &&
           std::any_of(segments.begin() + 2, segments.end(), [](const QString &segment) {
               return isOneOf(segment, {u"issues", u"discussions", u"pull", u"merge_requests"});
           });
}

} // namespace

QUrl readableLink(const QString &link) {
    QUrl url = WebLink::parsed(link);
    if (url.isEmpty()) {
        return url;
    }
    dropQueryItems(url, isCampaignItem);
    QStringList segments = WebLink::segments(url);
    if (WebLink::site(url) == u"github.com" && segments.size() > 4 && segments[2] == u"blob") {
        segments.removeAt(2);
        url.setHost(QStringLiteral("raw.githubusercontent.com"));
        url.setPath(u'/' + segments.join(u'/'), QUrl::TolerantMode);
    }
    return url;
}

QString canonicalLink(const QString &link) {
    QUrl url = WebLink::parsed(link);
    if (url.isEmpty()) {
        return trimmed(link).toString();
    }
    url.setUserInfo({});
    url.setFragment({});
    if (url.port() == (url.scheme() == u"https" ? 443 : 80)) {
        url.setPort(-1);
    }
    dropQueryItems(url, isTrackingItem);
    QString path = url.path(QUrl::FullyEncoded);
    while (path.endsWith(u'/')) {
        path.chop(1);
    }
    url.setPath(path, QUrl::TolerantMode);
    return url.toString(QUrl::FullyEncoded);
}

bool namesOnePage(const QString &link) {
    const QUrl url = WebLink::parsed(link);
    const QStringList segments = WebLink::segments(url);
    if (segments.isEmpty() && !url.hasQuery()) {
        return false;
    }
    const auto turnsAway = [](const QString &word) {
        return isOneOf(word.toLower(),
                       {u"login", u"log-in", u"signin", u"sign-in", u"sign_in", u"signup",
                        u"sign-up", u"auth", u"sso", u"oauth", u"consent", u"captcha", u"challenge",
                        u"subscribe", u"404", u"error", u"accounts", u"not-found", u"unavailable"});
    };
    return !turnsAway(WebLink::site(url).section(u'.', 0, 0)) &&
           std::none_of(segments.begin(), segments.end(), turnsAway);
}

ItemKind guessKind(const QString &link) {
    const QUrl url = WebLink::parsed(link);
    const QString site = WebLink::site(url);
    const QString path = url.path().toLower() + u'/';
    const QStringList segments = WebLink::segments(url);
    if (isVideo(site, path)) {
        return ItemKind::Video;
    }
    if (isPackage(site)) {
        return ItemKind::Package;
    }
    if (isDiscussion(site, segments)) {
        return ItemKind::Discussion;
    }
    // What a repository is called tells nothing of its pages: "release-please" is a tool.
    const bool inRepository =
        isForge(site) && segments.size() >= 2 && !isGitHubPage(segments[0].toLower());
    const QString page = inRepository ? pageOfRepository(segments) : path;
    if (inRepository && (page == u"/" || page.startsWith(u"/tree/"))) {
        return ItemKind::Tool;
    }
    if (page.contains(u"/security/") || page.contains(u"/advisories")) {
        return ItemKind::Security;
    }
    if (page.contains(u"release") || page.contains(u"changelog")) {
        return ItemKind::Announcement;
    }
    return ItemKind::Article;
}

} // namespace vorle
