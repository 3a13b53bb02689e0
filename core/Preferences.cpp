#include "core/Preferences.h"

#include "base/French.h"
#include "base/MainThread.h"
#include "core/SettingsTable.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vorle {

namespace {

constexpr std::string_view subject = "vorle/Preferences";

using Form = SettingsFile::Form;

/// Sets are kept as lists.
void tidySets(Settings &settings) {
    for (QList<QString> *set :
         {&settings.excludedApps, &settings.keptApps, &settings.disabledReflexes}) {
        QList<QString> once;
        for (const QString &text : std::as_const(*set)) {
            if (!once.contains(text)) {
                once.append(text);
            }
        }
        *set = once;
    }
}

/// The radius used to go from 0 to 9 under a key of its own.
void migrateRadius(const SettingsFile &file, Settings &settings) {
    const auto whole = [&](const QString &key) {
        const double number = file.value(key, Form::Plain).toDouble(0.5);
        return number == std::floor(number) ? std::optional(number) : std::nullopt;
    };
    if (whole(QStringLiteral("radiusLevel2"))) {
        return;
    }
    if (const auto old = whole(QStringLiteral("radiusLevel"))) {
        settings.radiusLevel = static_cast<int>(std::lround(std::clamp(*old, 0.0, 9.0) * 6 / 9.0));
    }
}

Settings read(const SettingsFile &file) {
    Settings settings;
    for (const SettingEntry &entry : settingTable()) {
        if (entry.key == u"calibrated") {
            // Who finished onboarding before calibration existed is not asked to calibrate.
            settings.calibrated = settings.onboarded;
        }
        const QJsonValue stored = file.value(entry.key, entry.form);
        if (!stored.isUndefined()) {
            entry.salvage(entry.key, stored, settings);
        }
    }
    migrateRadius(file, settings);
    tidySets(settings);
    return settings;
}

} // namespace

Preferences::Preferences(std::unique_ptr<SettingsFile> file, QObject *parent)
    : QObject(parent), m_file(std::move(file)), m_settings(read(*m_file)) {
    connect(m_file.get(), &SettingsFile::changedOutside, this, &Preferences::reload);
    connect(m_file.get(), &SettingsFile::saveFailed, this, &Preferences::saveFailed);
    connect(m_file.get(), &SettingsFile::saved, this, &Preferences::saved);
}

void Preferences::write(const QString &key, const Settings &before) {
    requireMainThread(subject);
    tidySets(m_settings);
    const SettingEntry *entry = findSetting(key);
    if (entry == nullptr) {
        return;
    }
    m_file->setValue(key, entry->json(before), entry->json(m_settings), entry->form);
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
    if (!entry->accept(key, value, next)) {
        return French::tr("« %1 » attend %2.").arg(key, entry->expectation(key));
    }
    const bool another = !entry->equal(next, m_settings);
    const Settings before = std::exchange(m_settings, std::move(next));
    write(key, before);
    if (another) {
        Q_EMIT changed(key);
    }
    return std::nullopt;
}

} // namespace vorle
