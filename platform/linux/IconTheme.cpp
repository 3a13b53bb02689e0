#include "platform/linux/IconTheme.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <optional>

namespace vorle {

namespace {

constexpr qint64 maxIndexBytes = 512 * 1024;
constexpr qsizetype maxThemes = 8; // that inherit from each other

using Group = QHash<QByteArray, QByteArray>;

/// The groups of a theme's index, by their names; none when it cannot be read.
QHash<QByteArray, Group> readIndex(const QString &path) {
    QFile file(path);
    QHash<QByteArray, Group> groups;
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return groups;
    }
    QByteArray inside;
    for (const QByteArray &raw : file.read(maxIndexBytes).split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.startsWith('[') && line.endsWith(']')) {
            inside = line.sliced(1, line.size() - 2);
        } else if (const qsizetype equals = line.indexOf('='); equals > 0) {
            groups[inside].insert(line.first(equals).trimmed(), line.sliced(equals + 1).trimmed());
        }
    }
    return groups;
}

QStringList partedList(const QByteArray &value) {
    QStringList words;
    for (const QString &word : QString::fromUtf8(value).split(u',', Qt::SkipEmptyParts)) {
        words += word.trimmed();
    }
    return words;
}

/// What names a file in a folder, and nothing above or beside it.
bool isPlain(const QString &name) {
    return !name.isEmpty() && !name.contains(u'/') && !name.startsWith(u'.');
}

constexpr const char *endings[] = {".png", ".svg"}; // the first is the one that everybody reads

} // namespace

QString IconTheme::file(const QString &icon, const QString &theme, int side) const {
    if (QDir::isAbsolutePath(icon)) {
        return icon;
    }
    QString bare = icon; // some write the ending, against the rules
    for (const char *ending : {".png", ".svg", ".xpm"}) {
        bare = bare.endsWith(QLatin1StringView(ending)) ? bare.chopped(4) : bare;
    }
    if (!isPlain(bare)) {
        return {};
    }
    QStringList themes{theme};
    for (qsizetype at = 0; at < themes.size() && themes.size() < maxThemes; ++at) {
        if (isPlain(themes[at])) {
            themes += themeNamed(themes[at])->parents;
        }
    }
    themes += QStringLiteral("hicolor");
    themes.removeDuplicates();
    for (const QString &each : std::as_const(themes)) {
        for (const char *ending : endings) {
            const QString found = inTheme(bare + QLatin1StringView(ending), each, side);
            if (!found.isEmpty()) {
                return found;
            }
        }
    }
    for (const QString &data : m_data) {
        for (const char *ending : endings) {
            const QString path =
                data + QStringLiteral("/pixmaps/") + bare + QLatin1StringView(ending);
            if (QFileInfo(path).isFile()) {
                return path;
            }
        }
    }
    return {};
}

/// The nearest in size; a larger one loses less than a smaller one.
QString IconTheme::inTheme(const QString &file, const QString &theme, int side) const {
    if (!isPlain(theme)) {
        return {};
    }
    const auto known = themeNamed(theme);
    const auto distance = [side](const Folder &folder) {
        return side > folder.most ? 2 * (side - folder.most) : std::max(0, folder.least - side);
    };
    QString nearest;
    std::optional<int> least;
    for (const Folder &folder : known->folders) {
        const int off = distance(folder);
        if (least && off >= *least) {
            continue;
        }
        for (const QString &data : m_data) {
            const QString path =
                data + QStringLiteral("/icons/") + theme + u'/' + folder.path + u'/' + file;
            if (QFileInfo(path).isFile()) {
                nearest = path;
                least = off;
                break;
            }
        }
    }
    return nearest;
}

std::shared_ptr<const IconTheme::Theme> IconTheme::themeNamed(const QString &name) const {
    const std::scoped_lock lock(m_mutex);
    auto &theme = m_themes[name];
    if (!theme) {
        theme = std::make_shared<Theme>(readTheme(name));
    }
    return theme;
}

/// A theme's folders may lie in several data directories; the first index counts. Only folders
/// that hold icons of applications are of interest.
IconTheme::Theme IconTheme::readTheme(const QString &name) const {
    Theme theme;
    for (const QString &data : m_data) {
        const auto groups =
            readIndex(data + QStringLiteral("/icons/") + name + QStringLiteral("/index.theme"));
        const Group &head = groups.value("Icon Theme");
        if (head.isEmpty()) {
            continue;
        }
        theme.parents = partedList(head.value("Inherits"));
        for (const QString &path : partedList(head.value("Directories"))) {
            const Group &group = groups.value(path.toUtf8());
            const int size = group.value("Size").toInt();
            const int scale = std::max(1, group.value("Scale").toInt());
            if (group.value("Context", "Applications").toLower() != "applications" || size <= 0 ||
                path.contains(QStringLiteral(".."))) {
                continue;
            }
            const bool scalable = group.value("Type") == "Scalable";
            const int around = scalable ? 0 : group.value("Threshold", "2").toInt();
            const int least = scalable ? group.value("MinSize").toInt() : size - around;
            const int most = scalable ? group.value("MaxSize").toInt() : size + around;
            theme.folders +=
                {path, (least > 0 ? least : size) * scale, (most > 0 ? most : size) * scale};
        }
        break;
    }
    return theme;
}

} // namespace vorle
