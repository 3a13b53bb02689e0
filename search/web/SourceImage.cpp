#include "search/web/SourceImage.h"

#include "base/WebLink.h"
#include "search/web/AttributeReader.h"
#include "search/web/Charset.h"
#include "search/web/ImageBody.h"
#include "search/web/ImageHeader.h"
#include "search/web/Links.h"
#include "search/web/PicturePage.h"
#include "storage/DurableFile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSet>
#include <QStandardPaths>
#include <QThreadPool>

#include <system_error>

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr int maxConcurrentSources = 8;
constexpr auto deadline = 8s;
constexpr qint64 maxHeadBytes = 1'200'000; // 300,000 characters of at most 4 bytes
constexpr int minSide = 8;
constexpr int maxSide = 8'192;
constexpr qint64 maxPixels = qint64{4'096} * 4'096;
constexpr auto userAgent = "Mozilla/5.0 (Macintosh) vorle";

/// Where the picture of a page may be, the preferred address first: what it names, its site's icon.
QList<QUrl> addressesFor(const HttpResponse &page) {
    QList<QUrl> addresses;
    const auto text =
        page.ok() ? decodeText(page.body, page.contentType) : std::optional<QByteArray>();
    if (text) {
        const std::string_view html(text->constData(), static_cast<std::size_t>(text->size()));
        for (const std::string_view found : html::announcedPictures(html)) {
            if (const auto picture = WebLink::resolved(html::addressIn(found), page.url)) {
                addresses += picture->url();
            }
        }
    }
    return addresses << page.url.resolved(QUrl(QStringLiteral("/favicon.ico")));
}

/// Whether asking again would give the same: an answer, or an address that is refused.
bool isFinal(const HttpResponse &response) {
    return response.outcome == HttpResponse::Outcome::Answered ||
           response.outcome == HttpResponse::Outcome::Refused;
}

/// How a try ended.
enum class Found {
    Kept,  ///< it is in the cache
    None,  ///< there is none, and asking again would not help
    NotNow ///< no answer came, or the disk refused it
};

bool keep(const QString &path, const QByteArray &bytes) {
    try {
        makeOwnFolder(QFileInfo(path).path());
        replaceWhole(path, bytes);
        return true;
    } catch (const std::system_error &) {
        return false;
    }
}

/// Lets the oldest pictures go until the rest has room.
void holdToItsSize(const QString &folder) {
    qint64 sum = 0;
    const QFileInfoList pictures = QDir(folder).entryInfoList(
        {QStringLiteral("*.img")}, QDir::Files | QDir::NoSymLinks, QDir::Time); // the newest first
    for (const QFileInfo &picture : pictures) {
        sum += picture.size();
        if (sum > SourceImage::maxCacheBytes) {
            QFile::remove(picture.filePath());
        }
    }
}

} // namespace

/// What the pictures under way share. They hold it, so that it outlives the last of them.
class SourceImage::Cache {
public:
    Cache(HttpClient &http, Locations locations)
        : m_http(&http), m_locations(std::move(locations)), m_gate(maxConcurrentSources) {}

    static Task<std::optional<Picture>> picture(std::shared_ptr<Cache> self, QString link,
                                                CancelToken cancel);

    QString path(const QString &file) const { return m_locations.cacheFolder + u'/' + file; }

private:
    /// Lets those who wait for the same file go on, however its making ends.
    class Making {
    public:
        Making(Cache &cache, QString file) : m_cache(cache), m_file(std::move(file)) {
            m_cache.m_making.insert(m_file, {});
        }
        Making(const Making &) = delete;
        Making &operator=(const Making &) = delete;
        ~Making() {
            const QList<OneShot> waiting = m_cache.m_making.take(m_file);
            for (const OneShot &done : waiting) {
                done.fire();
            }
        }

    private:
        Cache &m_cache;
        QString m_file;
    };

    Task<HttpResponse> get(QUrl url, qint64 maxBytes, CancelToken cancel);
    Task<Found> fetch(QUrl url, QString file, CancelToken cancel);
    Task<Found> fetchOfPage(QUrl page, QString file, CancelToken cancel);

    QPointer<HttpClient> m_http;
    Locations m_locations;
    Gate m_gate;
    QHash<QString, QList<OneShot>> m_making; ///< who waits, by file
    QSet<QString> m_none;
};

Task<HttpResponse> SourceImage::Cache::get(QUrl url, qint64 maxBytes, CancelToken cancel) {
    if (m_http.isNull()) {
        co_return HttpResponse{};
    }
    HttpRequest request;
    request.url = std::move(url);
    request.userAgent = userAgent;
    request.maxBytes = maxBytes;
    request.deadline = deadline;
    co_return co_await m_http->get(std::move(request), std::move(cancel));
}

/// Puts the picture at `url` into the cache.
Task<Found> SourceImage::Cache::fetch(QUrl url, QString file, CancelToken cancel) {
    const HttpResponse response = co_await get(std::move(url), maxPictureBytes, cancel);
    if (!isFinal(response)) {
        co_return Found::NotNow;
    }
    if (!response.ok() || response.truncated) {
        co_return Found::None;
    }
    co_return co_await onPool([bytes = response.body, target = path(file)] {
        return !keeps(bytes) ? Found::None : keep(target, bytes) ? Found::Kept : Found::NotNow;
    });
}

Task<Found> SourceImage::Cache::fetchOfPage(QUrl page, QString file, CancelToken cancel) {
    const HttpResponse response = co_await get(std::move(page), maxHeadBytes, cancel);
    if (response.outcome != HttpResponse::Outcome::Answered) {
        // Its favicon would not answer either.
        co_return isFinal(response) ? Found::None : Found::NotNow;
    }
    const QList<QUrl> addresses = co_await onPool([response] { return addressesFor(response); });
    cancel.throwIfCancelled();
    Found all = Found::None;
    for (const QUrl &address : addresses) {
        const Found one = co_await fetch(address, file, cancel);
        if (one == Found::Kept) {
            co_return one;
        }
        all = one == Found::NotNow ? one : all;
    }
    co_return all;
}

Task<std::optional<Picture>> SourceImage::Cache::picture(std::shared_ptr<Cache> self, QString link,
                                                         CancelToken cancel) {
    cancel.throwIfCancelled();
    const auto page = WebLink::from(link, WebLink::Giver::User);
    if (!page) {
        co_return std::nullopt;
    }
    // All links into a repository share its card.
    const auto repository = gitHubRepository(link);
    const QString card =
        repository ? u'/' + repository->owner + u'/' + repository->name : QString();
    const QString key =
        repository ? QStringLiteral("https://github.com") + card.toLower() : canonicalLink(link);
    const QString file = QString::fromLatin1(
        QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256).toHex() + ".img");
    while (self->m_making.contains(file)) {
        OneShot done;
        self->m_making[file].append(done);
        const auto registration = cancel.onCancel([done] { done.fire(); });
        co_await done;
        cancel.throwIfCancelled();
    }
    const Picture picture{link, file};
    if (QFileInfo(self->path(file)).size() > 0) {
        co_return picture;
    }
    if (self->m_none.contains(file)) {
        co_return std::nullopt;
    }
    const Making making(*self, file);
    const auto permit = co_await self->m_gate.enter(cancel);
    const Found found =
        repository
            ? co_await self->fetch(QUrl(self->m_locations.cardHost + QStringLiteral("/1") + card),
                                   file, cancel)
            : co_await self->fetchOfPage(page->url(), file, cancel);
    cancel.throwIfCancelled();
    if (found == Found::None) {
        self->m_none.insert(file);
    }
    co_return found == Found::Kept ? std::optional(picture) : std::nullopt;
}

bool SourceImage::keeps(ImageSize size) {
    return std::min(size.width, size.height) >= minSide &&
           std::max(size.width, size.height) <= maxSide &&
           qint64{size.width} * size.height <= maxPixels;
}

bool SourceImage::keeps(const QByteArray &bytes) {
    const auto size = bytes.size() <= maxPictureBytes ? imageSize(bytes) : std::nullopt;
    return size && keeps(*size) && !isOverloaded(bytes);
}

QString SourceImage::defaultCacheFolder() {
    const QString named = qEnvironmentVariable("VORLE_PICTURES");
    if (!named.isEmpty()) {
        return named;
    }
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/vorle/pictures");
}

QString SourceImage::defaultCardHost() {
    return QStringLiteral("https://opengraph.githubassets.com");
}

SourceImage::SourceImage(HttpClient &http, Locations locations)
    : m_cache(std::make_shared<Cache>(http, locations)) {
    QThreadPool::globalInstance()->start([folder = locations.cacheFolder] {
        removeStaleTemporaryFiles(folder);
        holdToItsSize(folder);
    });
}

SourceImage::SourceImage(HttpClient &http, QString cacheFolder)
    : SourceImage(http, Locations{std::move(cacheFolder)}) {}

SourceImage::~SourceImage() = default;

Task<std::optional<Picture>> SourceImage::picture(QString link, CancelToken cancel) {
    return Cache::picture(m_cache, std::move(link), std::move(cancel));
}

QString SourceImage::path(const Picture &picture) const { return m_cache->path(picture.file); }

} // namespace vorle
