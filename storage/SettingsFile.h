#pragma once

#include "storage/FileWatch.h"
#include "storage/JsonSettings.h"

#include <QJsonValue>
#include <QObject>
#include <QSettings>
#include <QString>

#include <memory>
#include <optional>

namespace vorle {

/// Where settings are kept, one value a key: the user-defaults database on a Mac, a JSON file
/// elsewhere (one object, types kept, readable by hand; see JsonSettings). Keys it does not know
/// stay. Main thread only.
class SettingsFile final : public QObject {
    Q_OBJECT
public:
    /// How a value is put into the user-defaults database, whose types are richer than JSON's.
    /// In a JSON file all three are plain JSON: a date is an ISO 8601 text, a record an object.
    enum class Form {
        Plain, ///< number, boolean, text, list of texts, dictionary
        Date,  ///< a date
        Record ///< JSON data: the bytes of a JSON text
    };

    /// The user's own settings: on a Mac the user-defaults database, in the program's own domain
    /// ("fr.vorle.vorle"); elsewhere settings.json in the folder "vorle" of the user's
    /// configuration. VORLE_SETTINGS, when set, names a JSON file instead.
    /// @throws std::system_error when the file is there and cannot be read: what cannot be read
    ///         must not be written over
    SettingsFile();
    /// A JSON file. @throws std::system_error as above
    explicit SettingsFile(const QString &jsonFile);
    /// A user-defaults database, or what stands in for one.
    explicit SettingsFile(std::unique_ptr<QSettings> defaults);
    ~SettingsFile() override;

    /// The value as JSON; Undefined when the key is absent. Records are read from JSON data, from
    /// a JSON text and from a plain object or list alike.
    QJsonValue value(const QString &key, Form form) const;
    /// Asks for the value to be written, and returns at once; null and Undefined take the key away.
    /// `base` is what was known before: what another process changed meanwhile in a list or a
    /// dictionary is kept. A file that is not a JSON object is first kept as
    /// "….illisible-<date>". A failure is logged and told; the value then waits for the next write.
    void setValue(const QString &key, const QJsonValue &base, const QJsonValue &value, Form form);
    /// Waits until what was set is on disk. False when it could not be: writeError() says why.
    bool flush();
    /// Sees what other processes wrote. What cannot be read changes nothing.
    void refresh();
    /// From now on `changedOutside` tells what other processes write, of the user-defaults database
    /// once the system has put it on the disk. Without a folder that can be watched it does
    /// nothing.
    void watch();

    /// Where it lies, for people.
    QString location() const { return m_json ? m_json->path() : m_defaults->fileName(); }
    /// Why the last write that ended failed, as a French sentence for the user; nothing when it did
    /// not.
    std::optional<QString> writeError() const { return m_writeError; }
    /// What the user has to know of how the file was found, as a French sentence: it was empty, or
    /// could not be read as settings. Nothing when all is well.
    const std::optional<QString> &notice() const { return m_notice; }
    /// Where an unreadable file is kept, once it is.
    const std::optional<QString> &setAside() const { return m_setAside; }

Q_SIGNALS:
    void changedOutside();
    void saveFailed(const QString &text);
    /// A write ended well after one that had failed.
    void saved();

private:
    void open(const QString &path);
    void take(const JsonSettings::Outcome &outcome);

    std::unique_ptr<QSettings> m_defaults; // one of the two
    std::unique_ptr<JsonSettings> m_json;
    std::unique_ptr<FileWatch> m_watch;
    unsigned m_taken = 0; ///< the save whose outcome was taken last
    std::optional<QString> m_notice;
    std::optional<QString> m_setAside;
    std::optional<QString> m_writeError;
};

} // namespace vorle
