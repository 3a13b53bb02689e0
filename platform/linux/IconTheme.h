#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <mutex>

namespace vorle {

/// Icons of applications in the icon themes of a freedesktop system (Icon Theme Specification):
/// the theme that is asked for, those it inherits from, "hicolor", then the icons that lie in no
/// theme. Themes are read once. Any thread.
class IconTheme {
public:
    /// @param dataDirectories  each may hold "icons/" and "pixmaps/"; the first wins
    explicit IconTheme(QStringList dataDirectories) : m_data(std::move(dataDirectories)) {}

    /// The file of that icon: a name ("org.gnome.Maps") or a path of its own. Of several sizes the
    /// one drawn for `side` pixels, else the nearest; PNG before SVG. "" for none.
    QString file(const QString &icon, const QString &theme, int side) const;

private:
    /// Where a theme keeps icons of one size.
    struct Folder {
        QString path; ///< in the theme's: "48x48/apps"
        int least = 0;
        int most = 0; ///< the pixels that its icons are for
    };
    struct Theme {
        QList<Folder> folders;
        QStringList parents;
    };

    std::shared_ptr<const Theme> themeNamed(const QString &name) const;
    Theme readTheme(const QString &name) const;
    QString inTheme(const QString &file, const QString &theme, int side) const;

    QStringList m_data;
    mutable std::mutex m_mutex; ///< over:
    mutable QHash<QString, std::shared_ptr<const Theme>> m_themes;
};

} // namespace vorle
