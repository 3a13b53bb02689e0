#include "platform/Native.h"

#include "platform/macos/BundleApps.h"
#include "platform/macos/FinderReveal.h"
#include "platform/macos/MacMotion.h"
#include "platform/macos/MacTerminals.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace vorle::native {

namespace {

/// On a Mac the native format of a settings file is the property list.
QVariantMap readPropertyList(const QString &path) {
    QVariantMap information;
    if (!QFileInfo(path).isFile()) {
        return information;
    }
    const QSettings list(path, QSettings::NativeFormat);
    for (const char *key : {"CFBundleIdentifier", "LSUIElement", "LSBackgroundOnly",
                            "LSApplicationCategoryType", "CFBundleExecutable"}) {
        const QString name = QString::fromLatin1(key);
        if (list.contains(name)) {
            information.insert(name, list.value(name));
        }
    }
    return information;
}

} // namespace

std::unique_ptr<InstalledApps> installedApps() {
    return std::make_unique<BundleApps>(
        QStringList{QStringLiteral("/Applications"),
                    QDir::homePath() + QStringLiteral("/Applications")},
        QStringLiteral("fr.vorle."), readPropertyList);
}

std::unique_ptr<Terminals> terminals() { return std::make_unique<MacTerminals>(); }

std::unique_ptr<FileReveal> fileReveal() { return std::make_unique<FinderReveal>(); }

std::unique_ptr<MotionSetting> motionSetting() { return std::make_unique<MacMotion>(); }

} // namespace vorle::native
