#include "app/window/Fonts.h"

#include <QDir>
#include <QFontDatabase>
#include <QGuiApplication>

namespace vorle {

#ifndef Q_OS_MACOS
namespace {

/// The list of all families would read every font there is.
bool hasInter() { return !QFontDatabase::styles(QStringLiteral("Inter")).isEmpty(); }

} // namespace
#endif

void Typefaces::list() {
#ifndef Q_OS_MACOS // there the system keeps the list
    hasInter();
#endif
}

Typefaces Typefaces::load() {
    Typefaces faces{QGuiApplication::font().family(), QGuiApplication::font().family()};
#ifndef Q_OS_MACOS
    if (hasInter()) {
        faces.text = QStringLiteral("Inter");
        faces.display = faces.text;
        // Whatever a text is set in, its first line is compared with the application's font: one
        // that is needed anyway, the theme's `textBody`, saves looking for another two.
        constexpr int body = 14;
        QFont usual(faces.text);
        usual.setPixelSize(body);
        QGuiApplication::setFont(usual);
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
