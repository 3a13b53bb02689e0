#pragma once

#include <QJsonValue>
#include <QSettings>
#include <QString>

#include <memory>
#include <optional>

namespace vorle {

/// Where settings are kept, one value a key: the user-defaults database on a Mac, a JSON file
/// elsewhere (one object, types kept, readable by hand). Several processes may write different
/// keys of one file: each write reads the file again under a lock. Keys it does not know stay.
/// Main thread only.
class SettingsFile {
public:
    /// How a value is put into the user-defaults database, whose types are richer than JSON's.
    /// In a JSON file all three are plain JSON: a date is an ISO 8601 text, a record an object.
    enum class Form {
        Plain, ///< number, boolean, text, list of texts, dictionary
        Date,  ///< a date
        Record ///< JSON data: the bytes of a JSON text
    };

    /// The user's own settings: on a Mac the user-defaults database; elsewhere settings.json in
    /// the folder "vorle" of the user's configuration. VORLE_SETTINGS, when set, names a JSON file
    /// instead.
    /// @throws std::system_error when a folder, a pipe or a device is in the file's place
    SettingsFile();
    /// A JSON file. @throws std::system_error as above
    explicit SettingsFile(const QString &jsonFile);

    /// The value as JSON; Undefined when the key is absent. Records are read from JSON data, from
    /// a JSON text and from a plain object or list alike.
    QJsonValue value(const QString &key, Form form) const;
    /// Writes the value and sees it on disk before it returns; null and Undefined take the key
    /// away. A file that is not a JSON object is first kept as "….illisible-<date>". A failure is
    /// logged and told by writeError(): the caller's value stands in memory.
    void setValue(const QString &key, const QJsonValue &value, Form form);
    /// Sees what other processes wrote.
    void refresh();

    /// Why the last write failed, as a French sentence for the user; nothing when it did not.
    const std::optional<QString> &writeError() const { return m_writeError; }

    /// Where an unreadable file is kept, once it is.
    const std::optional<QString> &setAside() const { return m_setAside; }

private:
    /// False when a file that holds no settings could not be kept: it must not be replaced.
    bool keepUnreadable();
    bool write(const QString &key, const QJsonValue &value, Form form);

    std::unique_ptr<QSettings> m_settings;
    std::optional<QString> m_setAside;
    std::optional<QString> m_writeError;
};

} // namespace vorle
