#include "core/SettingsFile.h"

#include "base/Clock.h"
#include "base/Log.h"
#include "base/MainThread.h"
#include "core/DurableFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QOperatingSystemVersion>
#include <QStandardPaths>

#include <system_error>

namespace vorle {

namespace {

constexpr std::string_view subject = "vorle/Preferences";

bool readJson(QIODevice &device, QSettings::SettingsMap &map) {
    const QByteArray bytes = device.readAll();
    const auto document = QJsonDocument::fromJson(bytes);
    if (!document.isObject()) {
        return bytes.isEmpty();
    }
    map = document.object().toVariantMap();
    return true;
}

bool writeJson(QIODevice &device, const QSettings::SettingsMap &map) {
    const QByteArray bytes = QJsonDocument(QJsonObject::fromVariantMap(map)).toJson();
    return device.write(bytes) == bytes.size();
}

/// QSettings knows formats by number for the life of the process.
QSettings::Format jsonFormat() {
    static const auto format =
        QSettings::registerFormat(QStringLiteral("json"), readJson, writeJson);
    return format;
}

QString userFile() {
    const QString named = qEnvironmentVariable("VORLE_SETTINGS");
    return !named.isEmpty()
               ? named
               : QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                     QStringLiteral("/vorle/settings.json");
}

bool usesUserDefaults() {
    return QOperatingSystemVersion::currentType() == QOperatingSystemVersion::MacOS &&
           qEnvironmentVariableIsEmpty("VORLE_SETTINGS");
}

/// Why the file may not be opened: a pipe would be waited for without end. Nothing when it may.
std::error_code oddity(const QString &path) {
    const QFileInfo info(path);
    if (!info.exists() || info.isFile()) {
        return {};
    }
    return std::make_error_code(info.isDir() ? std::errc::is_a_directory
                                             : std::errc::invalid_argument);
}

std::unique_ptr<QSettings> opened(const QString &path) {
    if (const std::error_code odd = oddity(path)) {
        throw std::system_error(odd, path.toStdString());
    }
    return std::make_unique<QSettings>(path, jsonFormat());
}

/// A JSON text's object or list, or nothing.
std::optional<QJsonValue> parsed(const QByteArray &utf8) {
    const auto document = QJsonDocument::fromJson(utf8);
    if (document.isObject()) {
        return document.object();
    }
    return document.isArray() ? std::optional<QJsonValue>(document.array()) : std::nullopt;
}

QVariant forUserDefaults(const QJsonValue &value, SettingsFile::Form form) {
    switch (form) {
    case SettingsFile::Form::Date:
        if (const auto moment = parseIso8601(value.toString().toUtf8())) {
            return *moment;
        }
        break;
    case SettingsFile::Form::Record:
        return (value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject()))
            .toJson(QJsonDocument::Compact);
    case SettingsFile::Form::Plain:
        break;
    }
    return value.toVariant();
}

} // namespace

SettingsFile::SettingsFile()
    : m_settings(usesUserDefaults() ? std::make_unique<QSettings>() : opened(userFile())) {}

SettingsFile::SettingsFile(const QString &jsonFile) : m_settings(opened(jsonFile)) {}

QJsonValue SettingsFile::value(const QString &key, Form form) const {
    requireMainThread(subject);
    const QVariant stored = m_settings->value(key);
    if (!stored.isValid()) {
        return QJsonValue::Undefined;
    }
    if (stored.typeId() == QMetaType::QDateTime) {
        return QString::fromLatin1(formatIso8601(stored.toDateTime()));
    }
    const bool text = stored.typeId() == QMetaType::QString;
    if (form == Form::Record && (text || stored.typeId() == QMetaType::QByteArray)) {
        return parsed(text ? stored.toString().toUtf8() : stored.toByteArray())
            .value_or(QJsonValue::Null);
    }
    return QJsonValue::fromVariant(stored);
}

void SettingsFile::setValue(const QString &key, const QJsonValue &value, Form form) {
    requireMainThread(subject);
    m_writeError.reset();
    if (!write(key, value, form)) {
        logLine(QStringLiteral("the setting could not be written: ") + key);
        m_writeError = QCoreApplication::translate(
                           "SettingsFile", "Le réglage « %1 » n’a pas pu être enregistré dans %2")
                           .arg(key, m_settings->fileName());
    }
}

bool SettingsFile::write(const QString &key, const QJsonValue &value, Form form) {
    if (!keepUnreadable()) {
        return false;
    }
    if (m_settings->status() == QSettings::AccessError &&
        m_settings->format() != QSettings::NativeFormat) {
        // The status sticks; what is still to be written does not depend on this object.
        m_settings = std::make_unique<QSettings>(m_settings->fileName(), jsonFormat());
    }
    if (value.isNull() || value.isUndefined()) {
        m_settings->remove(key);
    } else if (m_settings->format() == QSettings::NativeFormat) {
        m_settings->setValue(key, forUserDefaults(value, form));
    } else {
        m_settings->setValue(key, value.toVariant());
    }
    m_settings->sync();
    return m_settings->status() != QSettings::AccessError;
}

void SettingsFile::refresh() {
    requireMainThread(subject);
    if (m_settings->format() == QSettings::NativeFormat || !oddity(m_settings->fileName())) {
        m_settings->sync();
    }
}

bool SettingsFile::keepUnreadable() {
    if (m_settings->format() == QSettings::NativeFormat) {
        return true;
    }
    const QString path = m_settings->fileName();
    try {
        const auto bytes = readWhole(path);
        if (!bytes || bytes->isEmpty() || QJsonDocument::fromJson(*bytes).isObject()) {
            return true;
        }
        const QString aside = asideName(path, QDateTime::currentDateTime());
        keepAside(path, aside);
        m_setAside = aside;
        logLine(QStringLiteral("the settings file could not be read, kept as ") + aside);
    } catch (const std::system_error &error) {
        logLine(QStringLiteral("the settings file could not be read: ") +
                QString::fromLocal8Bit(error.what()));
        return false;
    }
    return true;
}

} // namespace vorle
