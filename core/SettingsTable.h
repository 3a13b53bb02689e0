#pragma once

#include "core/Settings.h"
#include "storage/SettingsFile.h"

#include <QJsonValue>
#include <QString>

#include <span>

namespace vorle {

/// One row of Settings::rows(), free of its type.
struct SettingEntry {
    QString key;
    SettingsFile::Form form;
    /// Sets it when the JSON value fits exactly: type, words and ranges. False changes nothing.
    bool (*accept)(const QJsonValue &value, Settings &into);
    /// Sets it as far as the JSON value makes sense: exactly, by the nearest whole number in its
    /// range, or by the entries of a list or a dictionary that fit. Anything else leaves it as it
    /// is.
    void (*salvage)(const QJsonValue &value, Settings &into);
    bool (*fits)(const Settings &settings); ///< its value is one that it may have
    void (*tidy)(Settings &settings);       ///< a list used as a set then holds each text once
    void (*migrate)(const SettingsFile &file, Settings &into); ///< see SettingRow; may be null
    QJsonValue (*json)(const Settings &from);                  ///< null without a value
    bool (*equal)(const Settings &a, const Settings &b);
    /// What it accepts, in French: "un nombre entier de 0 à 6".
    QString (*expectation)();
};

/// Every setting, in the order of Settings.
std::span<const SettingEntry> settingTable();

/// The setting of that key, or null.
const SettingEntry *findSetting(const QString &key);

} // namespace vorle
