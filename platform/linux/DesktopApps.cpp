#include "platform/linux/DesktopApps.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>

namespace vorle {

namespace {

constexpr qint64 maxEntryBytes = 256 * 1024;
constexpr qsizetype maxEntries = 20'000;

using Keys = QHash<QByteArray, QByteArray>;

/// The keys of the file's main group; none when it is no desktop entry.
Keys readEntry(const QString &path) {
    QFile file(path);
    Keys keys;
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return keys;
    }
    const QByteArray bytes = file.read(maxEntryBytes + 1);
    if (bytes.size() > maxEntryBytes) {
        return keys;
    }
    bool inside = false;
    for (const QByteArray &raw : bytes.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[')) {
            inside = line == "[Desktop Entry]";
        } else if (const qsizetype equals = line.indexOf('='); inside && equals > 0) {
            keys.insert(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
        }
    }
    return keys;
}

QString text(const QByteArray &value) {
    QString out = QString::fromUtf8(value);
    for (qsizetype at = out.indexOf(u'\\'); at >= 0 && at + 1 < out.size();
         at = out.indexOf(u'\\', at + 1)) {
        const QChar c = out[at + 1];
        out.replace(at, 2, c == u's' || c == u'n' || c == u't' || c == u'r' ? QChar(u' ') : c);
    }
    return out.trimmed();
}

/// The name in the program's language, else the plain one.
QString nameOf(const Keys &keys) {
    for (const char *key : {"Name[fr_FR]", "Name[fr]"}) {
        if (const QString name = text(keys.value(key)); !name.isEmpty()) {
            return name;
        }
    }
    return text(keys.value("Name"));
}

QStringList listOf(const QByteArray &value) {
    return QString::fromUtf8(value).split(u';', Qt::SkipEmptyParts);
}

bool shareOne(const QStringList &a, const QStringList &b) {
    return std::any_of(a.begin(), a.end(), [&](const QString &word) { return b.contains(word); });
}

std::optional<QString> categoryOf(const QStringList &categories) {
    const auto is = [&](const char *word) {
        return categories.contains(QLatin1StringView(word), Qt::CaseSensitive);
    };
    if (is("Development") || is("AudioVideoEditing")) {
        return std::nullopt;
    }
    if (is("Game")) {
        return QStringLiteral("public.app-category.games");
    }
    const bool player = is("Player");
    if (is("Music") || (is("Audio") && player && !is("Video"))) {
        return QStringLiteral("public.app-category.music");
    }
    if (is("TV") || ((is("Video") || is("AudioVideo")) && player)) {
        return QStringLiteral("public.app-category.entertainment");
    }
    return std::nullopt;
}

bool isThere(const QString &program, const QStringList &folders) {
    return program.isEmpty() || folders.isEmpty() ||
           !QStandardPaths::findExecutable(program, folders).isEmpty();
}

/// Whether the entry opens an application in this session.
bool opens(const Keys &keys, const DesktopApps::Setting &setting) {
    const auto isTrue = [&](const char *key) { return keys.value(key) == "true"; };
    if (keys.value("Type") != "Application" || isTrue("Hidden") || isTrue("NoDisplay") ||
        isTrue("Terminal") || (keys.value("Exec").isEmpty() && !isTrue("DBusActivatable"))) {
        return false;
    }
    const bool elsewhere =
        keys.contains("OnlyShowIn") && !shareOne(listOf(keys["OnlyShowIn"]), setting.desktops);
    const bool notHere = shareOne(listOf(keys.value("NotShowIn")), setting.desktops);
    // The menu specification's words for what is part of the desktop itself.
    static const QStringList background{QStringLiteral("Applet"), QStringLiteral("Screensaver"),
                                        QStringLiteral("Shell"), QStringLiteral("TrayIcon")};
    return !elsewhere && !notHere && !shareOne(listOf(keys.value("Categories")), background) &&
           isThere(text(keys.value("TryExec")), setting.programFolders);
}

QStringList foldersIn(const char *variable, const QString &otherwise) {
    const QString value = qEnvironmentVariable(variable);
    return (value.isEmpty() ? otherwise : value).split(u':', Qt::SkipEmptyParts);
}

} // namespace

DesktopApps::Setting DesktopApps::Setting::ofThisProcess() {
    const QString home = QDir::homePath();
    Setting setting;
    setting.dataDirectories =
        foldersIn("XDG_DATA_HOME", home + QStringLiteral("/.local/share")) +
        foldersIn("XDG_DATA_DIRS", QStringLiteral("/usr/local/share:/usr/share")) +
        QStringList{home + QStringLiteral("/.local/share/flatpak/exports/share"),
                    QStringLiteral("/var/lib/flatpak/exports/share"),
                    QStringLiteral("/var/lib/snapd/desktop")};
    setting.dataDirectories.removeDuplicates();
    setting.desktops = foldersIn("XDG_CURRENT_DESKTOP", {});
    setting.programFolders = foldersIn("PATH", QStringLiteral("/usr/local/bin:/usr/bin:/bin"));
    setting.ownPrefixes = {QStringLiteral("vorle."), QStringLiteral("vorle-"),
                           QStringLiteral("fr.vorle.")};
    return setting;
}

QString DesktopApps::iconFile(const QString &icon, const QString &theme, int side) const {
    return m_icons.file(icon, theme, side);
}

QList<InstalledApp> DesktopApps::list() const {
    QList<InstalledApp> apps;
    QSet<QString> seen;
    for (const QString &directory : m_setting.dataDirectories) {
        const QDir applications(directory + QStringLiteral("/applications"));
        QDirIterator files(applications.path(), {QStringLiteral("*.desktop")}, QDir::Files,
                           QDirIterator::Subdirectories); // links to folders are not followed
        while (files.hasNext() && seen.size() < maxEntries) {
            const QString path = files.next();
            const QString id = applications.relativeFilePath(path).replace(u'/', u'-');
            const auto begins = [&id](const QString &own) { return id.startsWith(own); };
            if (seen.contains(id) || std::ranges::any_of(m_setting.ownPrefixes, begins)) {
                continue;
            }
            const Keys keys = readEntry(path);
            if (keys.isEmpty()) {
                continue;
            }
            seen.insert(id);
            const QString name = nameOf(keys);
            if (!name.isEmpty() && opens(keys, m_setting)) {
                apps += {name, path, id, categoryOf(listOf(keys.value("Categories"))),
                         text(keys.value("Icon"))};
            }
        }
    }
    return apps;
}

} // namespace vorle
