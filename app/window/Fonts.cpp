#include "app/window/Fonts.h"

#include <QDir>
#include <QFontDatabase>
#include <QGuiApplication>

namespace vorle {

Typefaces Typefaces::load() {
    Typefaces faces{QGuiApplication::font().family(), QGuiApplication::font().family()};
#ifndef Q_OS_MACOS
    // The list of all families would read every font there is.
    if (!QFontDatabase::styles(QStringLiteral("Inter")).isEmpty()) {
        faces.text = QStringLiteral("Inter");
        faces.display = faces.text;
    }
#endif
    const QDir folder(QStringLiteral(":/vorle/fonts"));
    for (const QString &file : folder.entryList(QDir::Files, QDir::Name)) {
        const int id = QFontDatabase::addApplicationFont(folder.filePath(file));
        const QStringList families = QFontDatabase::applicationFontFamilies(id);
        if (!families.isEmpty()) {
            faces.display = families.first();
        }
    }
    return faces;
}

} // namespace vorle
