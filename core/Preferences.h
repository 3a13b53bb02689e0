#pragma once

#include "core/Settings.h"
#include "storage/SettingsFile.h"

#include <QJsonValue>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <type_traits>

namespace vorle {

/// The user's settings, observable. Each change is written at once, in the background. Main thread
/// only.
///
///     preferences.settings().interests
///     preferences.change(&Settings::weeklyMinutes, 120);
///
/// A value that is absent, of the wrong type, out of its range or an unknown word reads as the
/// setting's default; a whole number out of its range as the nearest in it; of a list or a
/// dictionary, the entries that fit are kept, and those that do not stay in the file. Nothing here
/// fails but the opening (see SettingsFile): a write that does not succeed is logged and told, and
/// the value stands in memory.
class Preferences final : public QObject {
    Q_OBJECT
public:
    explicit Preferences(std::unique_ptr<SettingsFile> file = std::make_unique<SettingsFile>(),
                         QObject *parent = nullptr);

    const Settings &settings() const { return m_settings; }

    /// Sets one setting, has it written, and announces it when it is another than before. Gives a
    /// French sentence, and changes nothing, when the value is out of its range or no word of it.
    template <class T>
    std::optional<QString> change(T Settings::*setting, std::type_identity_t<T> value);

    /// What a setting accepts, as a French sentence: what a value that does not fit is told.
    template <class T>
    static QString expectation(T Settings::*setting) {
        return expectation(keyOf(setting));
    }

    /// Whether `changed` named one of these settings.
    template <class... T>
    static bool isKeyOf(const QString &key, T Settings::*...settings) {
        return ((key == keyOf(settings)) || ...);
    }

    /// Reads again what other processes wrote, and announces what changed.
    void reload();
    /// Does so now, and from now on by itself, soon after another process wrote.
    void watch();
    /// Waits until every change is on disk. False when it could not be written: `writeError()` says
    /// why.
    bool flush() { return m_file->flush(); }

    /// The search radius that acts: 0, 1 or 2.
    int radius() const;
    /// How much an interest matters, 1 to 5.
    int weightOf(const QString &interest) const;
    static constexpr int defaultWeight = 3;
    /// Whether the app may be told to the agent as context.
    bool appInScope(const QString &name) const;

    /// The keys of all settings, for the command line.
    static QStringList settingKeys();
    /// The setting as JSON; null when it has no value, Undefined for an unknown key.
    QJsonValue setting(const QString &key) const;
    /// Sets a setting from JSON. Gives a French sentence, and changes nothing, when the key is
    /// unknown or the value does not fit; null takes an optional setting's value away.
    std::optional<QString> changeSetting(const QString &key, const QJsonValue &value);

    /// Why the last write that ended failed, as a French sentence for the user; see flush().
    std::optional<QString> writeError() const { return m_file->writeError(); }

    /// What the user has to know of how the settings file was found: see SettingsFile.
    const std::optional<QString> &notice() const { return m_file->notice(); }
    /// Where they lie, for people.
    QString location() const { return m_file->location(); }
    /// Where a settings file that could not be read is kept, once it was replaced.
    const std::optional<QString> &setAside() const { return m_file->setAside(); }

Q_SIGNALS:
    void changed(const QString &key);
    /// A write failed; `text` is a French sentence for the user.
    void saveFailed(const QString &text);
    /// A write ended well after one that had failed.
    void saved();

private:
    template <class T>
    static QString keyOf(T Settings::*setting);
    static QString expectation(const QString &key);
    /// `next` differs from the present settings in that one alone.
    std::optional<QString> take(const QString &key, Settings next);

    std::unique_ptr<SettingsFile> m_file;
    Settings m_settings;
};

template <class T>
QString Preferences::keyOf(T Settings::*setting) {
    std::string_view key;
    const auto match = [&](const auto &row) {
        if constexpr (std::is_same_v<decltype(row.member), T Settings::*>) {
            if (row.member == setting) {
                key = row.key;
            }
        }
    };
    std::apply([&](const auto &...rows) { (match(rows), ...); }, Settings::rows());
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

template <class T>
std::optional<QString> Preferences::change(T Settings::*setting, std::type_identity_t<T> value) {
    Settings next = m_settings;
    next.*setting = std::move(value);
    return take(keyOf(setting), std::move(next));
}

} // namespace vorle
