#include "core/Preferences.h"

#include "base/French.h"
#include "base/MainThread.h"
#include "core/SettingsTable.h"

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

constexpr std::string_view subject = "vorle/Preferences";

Settings read(const SettingsFile &file) {
    Settings settings;
    for (const SettingEntry &entry : settingTable()) {
        if (entry.migrate != nullptr) {
            entry.migrate(file, settings);
        }
        const QJsonValue stored = file.value(entry.key, entry.form);
        if (!stored.isUndefined()) {
            entry.salvage(stored, settings);
        }
        entry.tidy(settings);
    }
    return settings;
}

} // namespace

Preferences::Preferences(std::unique_ptr<SettingsFile> file, QObject *parent)
    : QObject(parent), m_file(std::move(file)), m_settings(read(*m_file)) {
    connect(m_file.get(), &SettingsFile::changedOutside, this, &Preferences::reload);
    connect(m_file.get(), &SettingsFile::saveFailed, this, &Preferences::saveFailed);
    connect(m_file.get(), &SettingsFile::saved, this, &Preferences::saved);
}

QString Preferences::expectation(const QString &key) {
    return French::tr("« %1 » attend %2.").arg(key, findSetting(key)->expectation());
}

std::optional<QString> Preferences::take(const QString &key, Settings next) {
    requireMainThread(subject);
    const SettingEntry &entry = *findSetting(key);
    if (!entry.fits(next)) {
        return expectation(key);
    }
    entry.tidy(next);
    const Settings before = std::exchange(m_settings, std::move(next));
    m_file->setValue(key, entry.json(before), entry.json(m_settings), entry.form);
    if (!entry.equal(before, m_settings)) {
        Q_EMIT changed(key);
        if (before.agent != m_settings.agent && m_settings.agentModel) {
            change(&Settings::agentModel, std::nullopt); // no other agent knows that name
        }
    }
    return std::nullopt;
}

void Preferences::reload() {
    requireMainThread(subject);
    m_file->refresh();
    const Settings before = std::exchange(m_settings, read(*m_file));
    for (const SettingEntry &entry : settingTable()) {
        if (!entry.equal(before, m_settings)) {
            Q_EMIT changed(entry.key);
        }
    }
}

void Preferences::watch() {
    m_file->watch();
    reload(); // what was written before anybody watched
}

int Preferences::radius() const { return std::min(m_settings.radiusLevel, 2); }

int Preferences::weightOf(const QString &interest) const {
    return m_settings.interestWeights.value(interest, defaultWeight);
}

bool Preferences::appInScope(const QString &name) const {
    return m_settings.accessMode == AccessMode::AllExcept ? !m_settings.excludedApps.contains(name)
                                                          : m_settings.keptApps.contains(name);
}

QStringList Preferences::settingKeys() {
    QStringList keys;
    for (const SettingEntry &entry : settingTable()) {
        keys.append(entry.key);
    }
    return keys;
}

QJsonValue Preferences::setting(const QString &key) const {
    const SettingEntry *entry = findSetting(key);
    return entry == nullptr ? QJsonValue(QJsonValue::Undefined) : entry->json(m_settings);
}

std::optional<QString> Preferences::changeSetting(const QString &key, const QJsonValue &value) {
    requireMainThread(subject);
    const SettingEntry *entry = findSetting(key);
    if (entry == nullptr) {
        return French::tr("Réglage inconnu : « %1 ».").arg(key);
    }
    Settings next = m_settings;
    return entry->accept(value, next) ? take(key, std::move(next)) : expectation(key);
}

} // namespace vorle
