#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace vorle {

/// A release as the feed tells of it: nothing of it is known to be true.
struct Release {
    QString version; ///< isReleaseVersion()
    QUrl archive;
    qint64 bytes = 0; ///< of the archive, 1 to maxArchiveBytes
    QByteArray signature;
    QString system;        ///< what the archive is for: "linux", "linux-x86_64"; "" is a Mac
    QString minimumSystem; ///< the oldest system it runs on; "" where any does
    QString notes;         ///< as it may be shown: plain text or Markdown, no signs nobody sees

    static constexpr qint64 maxArchiveBytes = 300'000'000;
    bool operator==(const Release &) const = default;
};

/// What a release has to suit.
struct Machine {
    QString system;       ///< "linux"
    QString architecture; ///< "x86_64"
    QString cLibrary;     ///< its version, which a Linux release names as its minimum; "" unknown

    static Machine ofThisProcess();
};

/// A feed longer than this is none of ours.
constexpr qint64 maxAppcastBytes = 1'000'000;

/// The releases of an update feed: RSS, with the elements and attributes of the sparkle namespace.
/// Items that lack anything are passed over. A document type is refused, with it every entity of
/// the document's own, and so are tags of thousands of attributes, which an XML reader chokes on.
/// Linear. Pure, any thread. @param base  what relative addresses are resolved against
/// @throws UpdateError for what is no such feed
QList<Release> readAppcast(const QByteArray &xml, const QUrl &base);

/// The newest release that suits the machine and is newer than the version in use. Releases of a
/// channel were left out by readAppcast(): they are for who asks for them.
std::optional<Release> newestRelease(const QList<Release> &releases, const Machine &machine,
                                     const QString &inUse);

} // namespace vorle
