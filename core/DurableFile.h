#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>
#include <span>

/// Whole files that must survive a crash, a full disk and a curious user. Any thread. Failures are
/// std::system_error with the system's own code.
namespace vorle {

/// Where a path leads once its last part is no symbolic link any more; the path itself when it is
/// none. What it leads to need not exist.
/// @throws std::system_error for a loop of links
QString linkTarget(const QString &path);

/// All bytes of a regular file, with spare capacity past the end so that they can be parsed where
/// they are. Nothing when there is no such file.
/// @throws std::system_error for what cannot be read, is no regular file or passes 2 GB
std::optional<QByteArray> readWhole(const QString &path);

/// Replaces a file by these pieces, one after the other, in one step: whoever reads it, even after
/// a crash, finds the old bytes or the new. A symbolic link is written through, the file's mode
/// kept; a new file is the user's alone (0600).
/// @throws std::system_error; the file is then as it was
void replaceWhole(const QString &path, std::span<const QByteArrayView> pieces);

/// Removes what a process that died in the middle of replaceWhole() left beside the file.
void sweepLeftovers(const QString &path);

/// A free name beside the file to keep its present bytes under: "….illisible-2026-10-26-080000".
QString asideName(const QString &path, const QDateTime &now);

/// Gives the file's bytes a second name, which stands when the file is replaced. Does nothing
/// when there is no such file.
/// @throws std::system_error
void keepAside(const QString &path, const QString &aside);

} // namespace vorle
