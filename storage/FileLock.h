#pragma once

#include "base/Descriptor.h"

#include <QString>

#include <chrono>

namespace vorle {

/// The right to change a file: one holder at a time over all processes. A lock on an open file
/// beside it ("….lock"), which the system releases when the holder ends, however it ends; the lock
/// file itself stays, and what it holds says nothing. Several names of one file (symbolic links)
/// share one lock. One thread at a time.
class FileLock {
public:
    /// The lock of that file, in the file beside it that has this ending; an empty name is always
    /// free to take.
    explicit FileLock(const QString &file, const QString &ending = QStringLiteral(".lock"));
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;
    ~FileLock() = default;

    bool isHeld() const { return m_held; }
    /// Takes the lock when nobody else holds it.
    /// @throws std::system_error when the lock file cannot be opened
    bool tryLock();
    /// The same, waiting that long for its holder. @throws as tryLock()
    bool lockWithin(std::chrono::milliseconds patience);
    void release();
    /// Whether another holder has it at this moment. Asks without taking it, and makes no lock
    /// file.
    /// @throws as tryLock()
    bool isHeldElsewhere() const;

private:
    QString m_path;
    Descriptor m_descriptor{-1};
    bool m_held = false;
};

} // namespace vorle
