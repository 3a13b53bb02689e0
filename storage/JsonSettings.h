#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QMap>
#include <QString>
#include <QStringList>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

namespace vorle {

/// What becomes of a list or a dictionary that was changed here, from `base` to `mine`, and by
/// another process meanwhile, from `base` to `theirs`: both changes. An entry that this process did
/// not know, or could not read, stays. Anything else: `mine`. Pure, any thread.
QJsonValue mergedSetting(const QJsonValue &base, const QJsonValue &mine, const QJsonValue &theirs);

/// A settings file: one JSON object, a value a key. Several processes may change one file: each
/// change takes the file's lock, reads the file again, puts its keys in and replaces the file as a
/// whole and atomically. A thread of its own does that, so that nobody waits for the disk but in
/// flush() (the caller's, where none can be started). Called from one thread.
class JsonSettings {
public:
    /// A change that waits for the disk.
    struct Change {
        QJsonValue base;  ///< what was known before
        QJsonValue value; ///< null takes the key away
    };
    using Changes = QMap<QString, Change>;

    /// What a save that ended came to.
    struct Outcome {
        unsigned number = 0; ///< counts the saves
        std::error_code error;
        QStringList keys;             ///< that it was to write
        std::optional<QString> aside; ///< where it kept a file that held no settings
    };

    /// Reads the file. `finished` is called on another thread after each save.
    /// @throws std::system_error when the file is there and cannot be read, is no regular file, or
    ///         has more than 10 MB
    JsonSettings(QString path, std::function<void(const Outcome &)> finished);
    JsonSettings(const JsonSettings &) = delete;
    JsonSettings &operator=(const JsonSettings &) = delete;
    /// Finishes the saves asked for.
    ~JsonSettings();

    const QString &path() const { return m_path; }

    /// The value: what waits for the disk, else what the file held when it was last read. Undefined
    /// when the key is absent.
    QJsonValue value(const QString &key) const;
    /// Asks for a change, and returns at once. A change whose save fails waits for the next one.
    void change(const QString &key, const QJsonValue &base, const QJsonValue &value);
    /// Reads the file again. False when it holds no settings: what was known stays. @throws
    /// std::system_error as the constructor
    bool refresh();
    /// Waits until every change is on disk; tries once more after a failed save. Gives the last
    /// save's outcome.
    Outcome flush();

    /// The file was there, was read whole, and holds no JSON object; it stays as it is until the
    /// first change, which keeps it aside.
    bool isUnreadable() const { return m_unreadable; }
    /// The file was there and empty.
    bool wasEmpty() const { return m_empty; }

private:
    void run();
    /// Saves what waits, with the lock let go meanwhile.
    void saveOnce(std::unique_lock<std::mutex> &lock);

    const QString m_path;
    const std::function<void(const Outcome &)> m_finished;
    bool m_unreadable = false;
    bool m_empty = false;

    mutable std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    QJsonObject m_disk;
    Changes m_waiting;
    Changes m_saving;
    bool m_asked = false; ///< a save is to be tried
    bool m_busy = false;
    bool m_ending = false;
    Outcome m_last;
    unsigned m_saves = 0; ///< that succeeded

    std::thread m_thread; // started by the first change: who only reads needs none
};

} // namespace vorle
