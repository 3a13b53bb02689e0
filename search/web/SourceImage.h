#pragma once

#include "base/HttpClient.h"
#include "core/Topic.h"
#include "search/web/ImageHeader.h"

#include <QString>

#include <memory>
#include <optional>

namespace vorle {

/// Finds a picture for a source and keeps it in the picture cache, so that each is fetched once:
/// the social card of a GitHub repository, with no page fetched; else, of the pictures the page
/// names for itself, its icons and the site's favicon, the first that is one. All links into one
/// repository share its card, and all spellings of one link their picture.
///
/// Pictures come from strangers: nothing is decoded here. A file is kept only when its first bytes
/// are those of a PNG, JPEG, GIF, WebP or ICO, its header gives both sides between 8 and 8,192
/// pixels and at most 16,777,216 pixels in all, it has at most 5,000,000 bytes, and decoding it
/// takes no more than that says (`isOverloaded`). SVG, being a program of sorts, is never kept.
///
/// Main thread; at most 8 sources at a time. May be deleted while pictures are under way: they go
/// on by themselves, and end without a picture when the client is gone.
class SourceImage {
public:
    struct Locations {
        QString cacheFolder;                  ///< made when the first picture is kept
        QString cardHost = defaultCardHost(); ///< "https://…" without a trailing slash
    };

    /// The user's own picture cache; the folder that VORLE_PICTURES names where it names one.
    static QString defaultCacheFolder();
    static QString defaultCardHost();

    static constexpr qint64 maxPictureBytes = 5'000'000;
    /// What the cache folder holds at most when this is made: the oldest pictures go from it.
    static constexpr qint64 maxCacheBytes = 500'000'000;
    /// Whether a picture of that size, or a file with these bytes, is one that is kept. Pure, any
    /// thread.
    static bool keeps(ImageSize size);
    static bool keeps(const QByteArray &bytes);

    SourceImage(HttpClient &http, Locations locations);
    explicit SourceImage(HttpClient &http, QString cacheFolder = defaultCacheFolder());
    ~SourceImage();
    SourceImage(const SourceImage &) = delete;
    SourceImage &operator=(const SourceImage &) = delete;

    /// The picture of a source: its link, and the name of its file in the cache folder. Nothing
    /// when there is none to be had, which is remembered while the program runs, or when no answer
    /// came or the disk refused it, which is not. Never throws for what the network or the disk
    /// does. @throws Cancelled
    Task<std::optional<Picture>> picture(QString link, CancelToken cancel = {});

    /// Where a picture's file lies; what it names may have been cleared away meanwhile.
    QString path(const Picture &picture) const;

private:
    class Cache;
    std::shared_ptr<Cache> m_cache;
};

} // namespace vorle
