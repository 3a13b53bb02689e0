#include "storage/SettingsFile.h"

#include "base/Clock.h"
#include "base/Log.h"
#include "base/MainThread.h"
#include "base/SystemErrorText.h"
#include "storage/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QOperatingSystemVersion>
#include <QStandardPaths>

#include <cerrno>
#include <system_error>

namespace vorle {

namespace {

constexpr std::string_view subject = "vorle/Preferences";

bool usesUserDefaults() {
    return QOperatingSystemVersion::currentType() == QOperatingSystemVersion::MacOS &&
           qEnvironmentVariableIsEmpty("VORLE_SETTINGS");
}

/// The domain "fr.vorle.vorle" and nothing else. The program has no organisation's name: it would
/// move the folders of its data.
std::unique_ptr<QSettings> userDefaults() {
    auto settings =
        std::make_unique<QSettings>(QStringLiteral("vorle.fr"), QStringLiteral("vorle"));
    settings->setFallbacksEnabled(false);
    return settings;
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

QJsonValue fromUserDefaults(const QVariant &stored, SettingsFile::Form form) {
    if (!stored.isValid()) {
        return QJsonValue::Undefined;
    }
    if (stored.typeId() == QMetaType::QDateTime) {
        return QString::fromLatin1(formatIso8601(stored.toDateTime()));
    }
    if (form == SettingsFile::Form::Record && stored.typeId() == QMetaType::QByteArray) {
        return parsed(stored.toByteArray()).value_or(QJsonValue::Null);
    }
    return QJsonValue::fromVariant(stored);
}

} // namespace

SettingsFile::SettingsFile() {
    if (usesUserDefaults()) {
        m_defaults = userDefaults();
        return;
    }
    const QString named = qEnvironmentVariable("VORLE_SETTINGS");
    if (!named.isEmpty()) {
        open(named);
        return;
    }
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                           QStringLiteral("/vorle");
    if (QFileInfo(folder).isDir()) { // what only reads makes none
        makeOwnFolder(folder);
    }
    open(folder + QStringLiteral("/settings.json"));
}

SettingsFile::SettingsFile(const QString &jsonFile) { open(jsonFile); }

SettingsFile::SettingsFile(std::unique_ptr<QSettings> defaults) : m_defaults(std::move(defaults)) {}

SettingsFile::~SettingsFile() {
    m_json.reset(); // what it still has to say comes to nobody
}

void SettingsFile::open(const QString &path) {
    if (path.contains(QChar::ReplacementCharacter)) {
        // Bytes that no name of ours can carry: another file would be read, and written.
        throw std::system_error(EILSEQ, std::generic_category(), path.toStdString());
    }
    m_json = std::make_unique<JsonSettings>(path, [this](const JsonSettings::Outcome &outcome) {
        QMetaObject::invokeMethod(this, [this, outcome] { take(outcome); }, Qt::QueuedConnection);
    });
    if (m_json->isUnreadable()) {
        logLine(QStringLiteral("the settings file could not be read as settings"));
        m_notice =
            tr("Tes réglages étaient illisibles. Je pars des réglages d’origine\u202F; avant d’en "
               "changer un, je garderai l’ancien fichier à côté\u00A0: %1.illisible-…")
                .arg(path);
    } else if (m_json->wasEmpty()) {
        m_notice =
            tr("Ton fichier de réglages était vide. Je pars des réglages d’origine\u00A0: %1")
                .arg(path);
    }
    removeStaleTemporaryFiles(QFileInfo(linkTarget(path)).absolutePath());
}

QJsonValue SettingsFile::value(const QString &key, Form form) const {
    requireMainThread(subject);
    const QJsonValue stored =
        m_json ? m_json->value(key) : fromUserDefaults(m_defaults->value(key), form);
    return form == Form::Record && stored.isString()
               ? parsed(stored.toString().toUtf8()).value_or(QJsonValue::Null)
               : stored;
}

void SettingsFile::setValue(const QString &key, const QJsonValue &base, const QJsonValue &value,
                            Form form) {
    requireMainThread(subject);
    const bool absent = value.isNull() || value.isUndefined();
    // The fields of one record belong together.
    const QJsonValue before = form == Form::Record && value.isObject() ? QJsonValue() : base;
    if (m_json) {
        m_json->change(key, before, absent ? QJsonValue() : value);
    } else if (absent) {
        m_defaults->remove(key);
    } else {
        const QJsonValue present = this->value(key, form);
        m_defaults->setValue(key, forUserDefaults(mergedSetting(before, value, present), form));
    }
}

bool SettingsFile::flush() {
    requireMainThread(subject);
    if (m_json) {
        take(m_json->flush());
    } else {
        m_defaults->sync();
    }
    return !m_writeError;
}

void SettingsFile::take(const JsonSettings::Outcome &outcome) {
    if (outcome.number <= m_taken) {
        return; // flush() was quicker
    }
    m_taken = outcome.number;
    if (outcome.aside) {
        m_setAside = outcome.aside;
        m_notice = tr("Tes réglages étaient illisibles. J’ai gardé l’ancien fichier ici\u00A0: %1")
                       .arg(*m_setAside);
    }
    const bool failedBefore = m_writeError.has_value();
    m_writeError.reset();
    if (!outcome.error) {
        if (failedBefore) {
            Q_EMIT saved();
        }
        return;
    }
    const QString why = systemErrorText(outcome.error);
    m_writeError =
        outcome.keys.size() == 1
            ? tr("Le réglage «\u202F%1\u202F» n’a pas pu être enregistré dans %2\u00A0: %3.")
                  .arg(outcome.keys.first(), m_json->path(), why)
            : tr("Tes réglages n’ont pas pu être enregistrés dans %1\u00A0: %2.")
                  .arg(m_json->path(), why);
    if (!failedBefore) {
        logLine(QStringLiteral("settings could not be written: ") +
                QString::fromStdString(outcome.error.message()));
        Q_EMIT saveFailed(*m_writeError);
    }
}

void SettingsFile::refresh() {
    requireMainThread(subject);
    if (m_defaults) {
        m_defaults->sync();
        return;
    }
    try {
        m_json->refresh(); // an unfinished file is soon followed by a finished one
    } catch (const std::system_error &error) {
        logLine(QStringLiteral("the settings file cannot be read for now: ") +
                QString::fromLocal8Bit(error.what()));
    }
}

void SettingsFile::watch() {
    requireMainThread(subject);
    if (m_watch) {
        return;
    }
    if (m_json) {
        try {
            makeFolder(QFileInfo(linkTarget(m_json->path())).absolutePath());
        } catch (const std::system_error &) {
            return; // nobody writes there either
        }
    }
    // The database is a file too: the system writes it out soon after a change.
    m_watch = std::make_unique<FileWatch>(m_json ? m_json->path() : m_defaults->fileName());
    connect(m_watch.get(), &FileWatch::changed, this, &SettingsFile::changedOutside);
}

} // namespace vorle
