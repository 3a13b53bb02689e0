#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace vorle {

/// A link that lies in a file of its own, as desktops and browsers save one: ".desktop" of the type
/// Link, ".url", ".webloc".
struct LinkFile {
    QString url; ///< a web address, as WebLink takes a stranger's
    QString title;

    /// The largest file that is looked into, in bytes.
    static constexpr qint64 maxBytes = 64 << 10;

    /// What the bytes say, of whichever of the three kinds they are; nothing where they are none,
    /// or lead to no web address. Pure.
    static std::optional<LinkFile> from(const QByteArray &bytes);
    /// The link in the file of that path, called as the file where it has no title. Nothing for
    /// what is no regular file, is larger or cannot be read. Waits for the disk.
    static std::optional<LinkFile> at(const QString &path);

    bool operator==(const LinkFile &) const = default;
};

} // namespace vorle
