#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace vorle {

/// A file of ours in the temporary directory, removed when the object goes. Its name is the
/// prefix (which says whose it is: "vorle-run-"), a fresh UUID and the suffix.
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
    /// Leaves the file to the process it was made for, which removes it; `sweepStrays` does where
    /// that one died.
    void keep() { m_kept = true; }

private:
    QString m_path;
    bool m_kept = false;
};

/// Where others can write to the temporary directory or to a folder above it (as on Linux), points
/// TMPDIR of this process to a folder that only the user can enter: "vorle" in the user's runtime
/// directory, else (or when others can write along that path) in the user's cache. Otherwise
/// another user of the machine could plant instruction files: agents read those from their working
/// directory and the folders above it. To be called first in main, before any thread is started.
/// @throws std::system_error when there is no such folder and none can be made
void preparePrivateTemporaryDirectory();

/// Removes the files and folders named "vorle-…" that were left in the temporary directory more
/// than a day ago, by runs that died. Sockets and links stay.
void sweepStrays();

} // namespace vorle
