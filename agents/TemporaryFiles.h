#pragma once

#include "base/Descriptor.h"

#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

namespace vorle {

/// Marks a file or folder of ours in the temporary directory as in use while what is given back
/// lives, at most as long as this process, however that ends: `removeStaleFiles` leaves it alone. A
/// number below 0 where that cannot be.
Descriptor inUse(const QString &path);

/// Removes a folder with all that is in it, also where an archive brought folders that their owner
/// may not enter. What cannot be removed stays. Follows no link.
void removeWhole(const QString &folder);

/// A file of ours in the temporary directory, in use and then removed when the object goes. Its
/// name is the prefix (which says whose it is: "vorle-run-"), a fresh UUID and the suffix.
class TemporaryFile {
public:
    /// Creates it empty, readable by its owner alone; never opens one that exists or follows a
    /// link. @throws std::system_error
    TemporaryFile(QStringView prefix, QStringView suffix);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    const QString &path() const { return m_path; }
    /// Makes `bytes` its whole content. @throws std::system_error
    void write(QByteArrayView bytes) const;
    /// Leaves the file to the process it was made for, which may remove it; `removeStaleFiles`
    /// does, a day later, where it did not. For names that begin with "vorle-launch-", which a
    /// terminal reads, or "vorle-feedback-", which a mail program does.
    void keep() { m_kept = true; }

private:
    QString m_path;
    std::optional<Descriptor> m_use;
    bool m_kept = false;
};

/// Where others can write to the temporary directory or to a folder above it (as on Linux), be it
/// by their group, points TMPDIR of this process to a folder that only the user can enter: "vorle"
/// in the user's runtime directory, else (or when others can write along that path) in the user's
/// cache, else in the user's data. Otherwise another user of the machine could plant instruction
/// files: agents read those from their working directory and the folders above it. To be called
/// first in main, before any thread is started.
/// @throws std::system_error when there is no such folder and none can be made
void preparePrivateTemporaryDirectory();

/// Removes the files and folders of ours ("vorle-run-…" and the like) that were left in the
/// temporary directory by processes that are no more, whenever that was; those that are in use
/// stay. What was left to another program goes after a day, as does what cannot be told to be in
/// use. Sockets and links stay.
void removeStaleFiles();

} // namespace vorle
