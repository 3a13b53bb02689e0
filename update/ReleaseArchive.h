#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace vorle {

/// Whether the file carries this Ed25519 signature of that key's owner; false too where the file
/// cannot be read, or key or signature are none (32 and 64 bytes). Any thread.
bool isSignedBy(const QByteArray &publicKey, const QByteArray &signature, const QString &file);

/// What an archive of a release may hold: far more than one does, far less than a disk.
struct ArchiveLimits {
    qint64 bytes = 1'000'000'000; ///< of all its files, unpacked
    int entries = 5000;
};

/// Unpacks a tar archive, packed by xz or gzip, into a folder that it makes. Takes nothing but
/// folders and plain files at relative paths without "..", each once: no link, device or socket is
/// made, no owner and no mode is taken over but the right to run. All of it is on the disk when
/// this returns. `progress` is told how much of the archive was read, 0 to 1. Any thread.
/// @throws UpdateError for an archive that is none, is cut short or holds anything else,
///         std::system_error for what the system refuses; the folder may stand then, in part
void unpackRelease(const QString &archive, const QString &folder,
                   const std::function<void(double)> &progress = {}, ArchiveLimits limits = {});

} // namespace vorle
