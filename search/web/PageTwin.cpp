#include "search/web/PageTwin.h"

#include "base/Text.h"
#include "base/WebLink.h"
#include "core/GitHubLink.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QUrlQuery>

#include <algorithm>

namespace vorle {

namespace {

constexpr qsizetype maxReleases = 5;
constexpr qsizetype maxComments = 12;
constexpr qsizetype commentCharacters = 1'200;

/// One site keeps its former and its coming face beside the present one.
QString siteOf(const QUrl &url) {
    QString site = WebLink::site(url);
    return site == u"old.reddit.com" || site == u"new.reddit.com" ? site.sliced(4) : site;
}

QUrl https(const QString &host, const QString &path, const QString &query = {}) {
    QUrl url;
    url.setScheme(QStringLiteral("https"));
    url.setHost(host);
    url.setPath(path, QUrl::TolerantMode);
    if (!query.isEmpty()) {
        url.setQuery(query);
    }
    return url;
}

/// As a plain text is read, with a title of its own.
PageText pageOf(const QString &title, const QString &description, const QStringList &parts) {
    QStringList held;
    for (const QString &part : parts) {
        if (!trimmed(part).isEmpty()) {
            held += part;
        }
    }
    PageText page =
        extractPage(held.join(QStringLiteral("\n\n")).toUtf8(), "text/markdown; charset=utf-8");
    const auto line = [](const QString &text) {
        const QString one = clampedLine(text, maxLineCharacters);
        return one.isEmpty() ? std::nullopt : std::optional(one);
    };
    page.title = line(title);
    page.description = line(description);
    if (page.level == ReadLevel::None && (page.title || page.description)) {
        page.level = ReadLevel::Meta;
    }
    return page;
}

// npm

/// The newest versions with the days they came out on.
QString versionsText(const QJsonObject &times) {
    QList<std::pair<QString, QString>> dated;
    for (auto it = times.begin(); it != times.end(); ++it) {
        if (it.key() != u"created" && it.key() != u"modified") {
            dated += {it.value().toString().left(10), it.key()};
        }
    }
    std::sort(dated.begin(), dated.end(), std::greater<>());
    QStringList lines;
    for (const auto &[day, version] : dated.first(std::min(maxReleases * 2, dated.size()))) {
        lines += version + QStringLiteral(" (") + day + u')';
    }
    return lines.isEmpty() ? QString()
                           : QStringLiteral("Versions: ") + lines.join(QStringLiteral(", "));
}

PageText readPackage(const QByteArray &body) {
    const QJsonObject package = QJsonDocument::fromJson(body).object();
    const QString name = package.value(u"name").toString();
    if (name.isEmpty()) {
        return {};
    }
    QString latest = package.value(u"dist-tags").toObject().value(u"latest").toString();
    if (latest.isEmpty()) {
        latest = package.value(u"version").toString();
    }
    const QString description = package.value(u"description").toString();
    const QString deprecated = package.value(u"deprecated").toString();
    return pageOf((name + u' ' + latest).trimmed(), description,
                  {description,
                   deprecated.isEmpty() ? QString() : QStringLiteral("Deprecated: ") + deprecated,
                   versionsText(package.value(u"time").toObject()),
                   package.value(u"readme").toString()});
}

/// Where npm's packages are served from, each service under a name of its own.
constexpr QLatin1String packageHost("npmjs.org");

/// The name behind "/package/", its scope with it, and the version that the page is about.
struct PackagePage {
    QString name;
    QString version;
};

std::optional<PackagePage> packageOf(const QUrl &link) {
    const QStringList words = WebLink::segments(link);
    if (siteOf(link) != u"npmjs.com" || words.value(0) != u"package" || words.size() < 2) {
        return std::nullopt;
    }
    const bool scoped = words[1].startsWith(u'@') || words[1].startsWith(u"%40");
    const qsizetype parts = scoped && words.size() > 2 ? 2 : 1;
    PackagePage page;
    page.name = words.mid(1, parts).join(QStringLiteral("%2F"));
    if (words.value(1 + parts) == u"v") {
        page.version = words.value(2 + parts);
    }
    return page;
}

std::optional<PageTwin> packageTwin(const PackagePage &page, const QString &version) {
    const QString path = u'/' + page.name + (version.isEmpty() ? QString() : u'/' + version);
    return PageTwin{https(QStringLiteral("registry.%1").arg(packageHost), path),
                    PageTwin::Use::Instead, &readPackage};
}

// Reddit

QJsonObject dataOf(const QJsonValue &thing) { return thing.toObject().value(u"data").toObject(); }

PageText readThread(const QByteArray &body) {
    const QJsonArray listings = QJsonDocument::fromJson(body).array();
    const auto childrenOf = [&](int listing) {
        return dataOf(listings.at(listing)).value(u"children").toArray();
    };
    const QJsonObject post = dataOf(childrenOf(0).first());
    const QString title = post.value(u"title").toString();
    if (title.isEmpty()) {
        return {};
    }
    QStringList parts{post.value(u"selftext").toString()};
    const QString link = post.value(u"url").toString();
    if (!post.value(u"is_self").toBool(true) && !link.isEmpty()) {
        parts += QStringLiteral("Link: ") + link;
    }
    for (const QJsonValue child : childrenOf(1)) {
        const QJsonObject comment = dataOf(child);
        const QString said = comment.value(u"body").toString();
        if (!said.isEmpty() && parts.size() < maxComments) {
            parts +=
                QStringLiteral("Comment (") + QString::number(comment.value(u"score").toInt()) +
                QStringLiteral(" points): ") + firstCharacters(said, commentCharacters).toString();
        }
    }
    return pageOf(title, post.value(u"subreddit_name_prefixed").toString(), parts);
}

std::optional<PageTwin> threadTwin(const QUrl &link) {
    const QStringList words = WebLink::segments(link);
    const qsizetype comments = words.indexOf(QStringLiteral("comments"));
    if (siteOf(link) != u"reddit.com" || comments < 0 || comments + 1 >= words.size()) {
        return std::nullopt;
    }
    const QString path = u'/' + words.first(comments + 2).join(u'/') + QStringLiteral(".json");
    return PageTwin{https(QStringLiteral("www.reddit.com"), path,
                          QStringLiteral("limit=20&depth=1&raw_json=1")),
                    PageTwin::Use::Instead, &readThread};
}

// YouTube

PageText readVideo(const QByteArray &body) {
    const QJsonObject video = QJsonDocument::fromJson(body).object();
    const QString title = video.value(u"title").toString();
    const QString author = video.value(u"author_name").toString();
    if (title.isEmpty()) {
        return {};
    }
    return pageOf(title,
                  author.isEmpty()
                      ? QString()
                      : QStringLiteral("A video by ") + author + QStringLiteral(" on YouTube."),
                  {});
}

std::optional<PageTwin> videoTwin(const QUrl &link) {
    const QString site = siteOf(link);
    const QStringList words = WebLink::segments(link);
    QString id;
    if (site == u"youtu.be") {
        id = words.value(0);
    } else if (site == u"youtube.com" || site == u"music.youtube.com") {
        const bool named = words.size() > 1 &&
                           (words[0] == u"shorts" || words[0] == u"live" || words[0] == u"embed");
        id = named ? words[1] : QUrlQuery(link).queryItemValue(QStringLiteral("v"));
    }
    const bool plain = !id.isEmpty() && std::all_of(id.begin(), id.end(), [](QChar c) {
        return c < u'\u0080' && (c.isLetterOrNumber() || c == u'-' || c == u'_');
    });
    if (!plain) {
        return std::nullopt;
    }
    return PageTwin{https(QStringLiteral("www.youtube.com"), QStringLiteral("/oembed"),
                          QStringLiteral("format=json&url=https%3A%2F%2Fwww.youtube.com%2Fwatch"
                                         "%3Fv%3D") +
                              id),
                    PageTwin::Use::Unread, &readVideo};
}

// GitHub

QString releaseTitle(const QJsonObject &release) {
    const QString name = release.value(u"name").toString();
    const QString tag = release.value(u"tag_name").toString();
    return name.isEmpty()       ? tag
           : name.contains(tag) ? name
                                : name + QStringLiteral(" (") + tag + u')';
}

QString releaseDay(const QJsonObject &release) {
    return release.value(u"published_at").toString().left(10);
}

PageText readRelease(const QByteArray &body) {
    const QJsonObject release = QJsonDocument::fromJson(body).object();
    if (release.value(u"tag_name").toString().isEmpty()) {
        return {};
    }
    return pageOf(releaseTitle(release), QStringLiteral("Published ") + releaseDay(release),
                  {release.value(u"body").toString()});
}

PageText readReleases(const QByteArray &body) {
    QStringList parts;
    QString newest;
    for (const QJsonValue value : QJsonDocument::fromJson(body).array()) {
        const QJsonObject release = value.toObject();
        const QString title = releaseTitle(release);
        if (!title.isEmpty() && parts.size() < maxReleases) {
            newest = newest.isEmpty() ? title : newest;
            parts += title + QStringLiteral(", ") + releaseDay(release) + QStringLiteral("\n\n") +
                     release.value(u"body").toString();
        }
    }
    return parts.isEmpty() ? PageText() : pageOf(newest, {}, parts);
}

std::optional<PageTwin> releaseTwin(const QUrl &link) {
    const QStringList words = WebLink::segments(link);
    const auto repository = gitHubRepository(link.toString(QUrl::FullyEncoded));
    if (!repository || siteOf(link) != u"github.com" || words.value(2) != u"releases") {
        return std::nullopt;
    }
    const QString host = QStringLiteral("api.github.com");
    const QString root = QStringLiteral("/repos/") + repository->owner + u'/' + repository->name +
                         QStringLiteral("/releases");
    if (words.size() == 3) {
        return PageTwin{
            https(host, root, QStringLiteral("per_page=") + QString::number(maxReleases)),
            PageTwin::Use::Instead, &readReleases};
    }
    if (words[3] == u"latest" && words.size() == 4) {
        return PageTwin{https(host, root + QStringLiteral("/latest")), PageTwin::Use::Instead,
                        &readRelease};
    }
    if (words[3] == u"tag" && words.size() > 4) {
        return PageTwin{https(host, root + QStringLiteral("/tags/") + words.mid(4).join(u'/')),
                        PageTwin::Use::Instead, &readRelease};
    }
    return std::nullopt;
}

} // namespace

std::optional<PageTwin> twinOf(const QUrl &link) {
    if (const auto page = packageOf(link)) {
        return packageTwin(*page, page->version);
    }
    for (const auto &twin : {threadTwin(link), videoTwin(link), releaseTwin(link)}) {
        if (twin) {
            return twin;
        }
    }
    return std::nullopt;
}

std::optional<PageTwin> shorterTwin(const QUrl &link) {
    const auto page = packageOf(link);
    return page && page->version.isEmpty() ? packageTwin(*page, QStringLiteral("latest"))
                                           : std::nullopt;
}

} // namespace vorle
