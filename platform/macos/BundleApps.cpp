#include "platform/macos/BundleApps.h"

#include <QDir>
#include <QFileInfo>

namespace vorle {

namespace {

/// A flag of a dictionary, which may be a boolean, a number or a word.
bool isSet(const QVariantMap &information, const QString &key) {
    const QVariant value = information.value(key);
    if (value.typeId() != QMetaType::QString) {
        return value.toBool();
    }
    const QString word = value.toString().toLower();
    return word == u"1" || word == u"yes" || word == u"true";
}

QString textOf(const QVariantMap &information, const QString &key) {
    const QVariant value = information.value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

} // namespace

std::optional<InstalledApp> appOfBundle(const QString &path, const QVariantMap &information,
                                        const QString &ownPrefix) {
    const QString identifier = textOf(information, QStringLiteral("CFBundleIdentifier"));
    if (information.isEmpty() || isSet(information, QStringLiteral("LSUIElement")) ||
        isSet(information, QStringLiteral("LSBackgroundOnly")) ||
        identifier.startsWith(ownPrefix)) {
        return std::nullopt;
    }
    InstalledApp app;
    app.name = QFileInfo(path).completeBaseName();
    app.location = path;
    app.identifier = identifier;
    QString icon = textOf(information, QStringLiteral("CFBundleIconFile"));
    if (!icon.isEmpty() && !icon.contains(u'/')) {
        icon += icon.endsWith(u".icns") ? QString() : QStringLiteral(".icns");
        app.icon = path + QStringLiteral("/Contents/Resources/") + icon;
    }
    if (const QString category = textOf(information, QStringLiteral("LSApplicationCategoryType"));
        !category.isEmpty()) {
        app.category = category;
    }
    return app;
}

QString BundleApps::iconFile(const QString &icon, const QString &, int) const { return icon; }

QList<InstalledApp> BundleApps::list() const {
    QList<InstalledApp> apps;
    for (const QString &folder : m_folders) {
        const auto bundles = QDir(folder).entryInfoList({QStringLiteral("*.app")},
                                                        QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QFileInfo &bundle : bundles) {
            const QString path = bundle.absoluteFilePath();
            const auto information = m_read(path + QStringLiteral("/Contents/Info.plist"));
            if (auto app = appOfBundle(path, information, m_ownPrefix)) {
                apps += *std::move(app);
            }
        }
    }
    return apps;
}

} // namespace vorle
