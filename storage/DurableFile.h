#pragma once

#include "base/Descriptor.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>
#include <span>
#include <utility>

/// Whole files that must survive a crash, a full disk and a curious user. Any thread. Failures are
/// std::system_error with the system's own code.
namespace vorle {

/// Where a path leads once its last part is no symbolic link any more; the path itself when it is
/// none. What it leads to need not exist.
/// @throws std::system_error for a loop of links
QString linkTarget(const QString &path);

/// Twenty times the largest file foreseen.
constexpr qint64 maxFileBytes = 2'000'000'000;

/// All bytes of a regular file, with spare capacity past the end so that they can be parsed where
/// they are. Nothing when there is no such file.
/// @throws std::system_error for what cannot be read, is no regular file or has more than `most`
///         bytes, of which none is read then; it carries the path
std::optional<QByteArray> readWhole(const QString &path, qint64 most = maxFileBytes);

/// What becomes of a symbolic link that has the name of a file to be replaced.
enum class AtLink {
    WriteThrough, ///< it stays: a person may have put their file elsewhere
    Replace       ///< it goes, and what it leads to stays as it is: other programs reach the folder
};

/// What a file was before it was replaced. The system takes its room back when this goes, which
/// lasts longer than writing a large file where a disk is told of each block it may forget: whoever
/// is waited for keeps it until the new bytes are told to be there. Nothing where there was no
/// file.
class FormerFile {
public:
    explicit FormerFile(Descriptor file) : m_file(std::move(file)) {}

private:
    Descriptor m_file;
};

/// Replaces a file by these pieces, one after the other, in one step: whoever reads it, even after
/// a crash, finds the old bytes or the new. The file's mode is kept; a new file is the user's alone
/// (0600), whatever the umask. Its folder must exist.
/// @throws std::system_error; the file is then as it was (as the pieces say it, when all that
///         failed was to see the new name on the disk)
FormerFile replaceWhole(const QString &path, std::span<const QByteArrayView> pieces,
                        AtLink atLink = AtLink::WriteThrough);

/// The same for one piece.
void replaceWhole(const QString &path, QByteArrayView bytes, AtLink atLink = AtLink::WriteThrough);

/// Makes a folder and those above it that are missing, the user's alone (0700) whatever the umask.
/// One that stands already is left as it is.
/// @throws std::system_error with the path and what the system said
void makeFolder(const QString &path);

/// The same for a folder that is this program's by its name: one that stands already is made the
/// user's alone too.
void makeOwnFolder(const QString &path);

/// Removes what processes that died in the middle of replaceWhole() left in a folder. What a living
/// one is writing, here or on another machine that shares the folder, stays.
void removeStaleTemporaryFiles(const QString &folder);

/// A free name beside the file to keep its present bytes under: "….illisible-2026-10-26-080000".
QString backupName(const QString &path, const QDateTime &now);

/// Gives the file's bytes a second name, which stands when the file is replaced. Does nothing
/// when there is no such file.
/// @throws std::system_error
void keepCopy(const QString &path, const QString &aside);

} // namespace vorle
