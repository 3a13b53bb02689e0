#pragma once

#include "core/Settings.h"
#include "storage/SettingsFile.h"

#include <QJsonValue>
#include <QString>

#include <span>

namespace vorle {

/// One setting, free of its type: how it goes to JSON and back, and what it accepts.
struct SettingEntry {
    QString key;
    SettingsFile::Form form;
    /// Sets it when the JSON value fits exactly: type, words and ranges. False changes nothing.
    bool (*accept)(const QString &key, const QJsonValue &value, Settings &into);
    /// Sets it as far as the JSON value makes sense: exactly, by the nearest whole number in its
    /// range, or by the entries of a list or a dictionary that fit. Anything else leaves it as it
    /// is.
    void (*salvage)(const QString &key, const QJsonValue &value, Settings &into);
    QJsonValue (*json)(const Settings &from); ///< null without a value
    bool (*equal)(const Settings &a, const Settings &b);
    /// What it accepts, in French: "un nombre entier de 0 à 6".
    QString (*expectation)(const QString &key);
};

/// Every setting, in the order of Settings.
std::span<const SettingEntry> settingTable();

/// The setting of that key, or null.
const SettingEntry *findSetting(const QString &key);

} // namespace vorle
