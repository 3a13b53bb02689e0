#include "platform/Native.h"

#include "platform/macos/BundleApps.h"
#include "platform/macos/FinderReveal.h"
#include "platform/macos/MacDock.h"
#include "platform/macos/MacFrontBrowser.h"
#include "platform/macos/MacHotKey.h"
#include "platform/macos/MacKeyWatch.h"
#include "platform/macos/MacLoginItem.h"
#include "platform/macos/MacMail.h"
#include "platform/macos/MacMotion.h"
#include "platform/macos/MacNotifications.h"
#include "platform/macos/MacShare.h"
#include "platform/macos/MacSignatureCheck.h"
#include "platform/macos/MacTerminals.h"
#include "platform/macos/MacWidgetTimelines.h"
#include "platform/macos/SparkleEngine.h"

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
    for (const char *key :
         {"CFBundleIdentifier", "LSUIElement", "LSBackgroundOnly", "LSApplicationCategoryType",
          "CFBundleExecutable", "CFBundleIconFile"}) {
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

std::unique_ptr<SharedContainer> sharedContainer() { return std::make_unique<AppGroupContainer>(); }

std::unique_ptr<DropSignal> dropSignal() { return std::make_unique<DistributedDropSignal>(); }

std::unique_ptr<FrontBrowser> frontBrowser() { return std::make_unique<MacFrontBrowser>(); }

std::unique_ptr<SignatureCheck> signatureCheck() { return std::make_unique<MacSignatureCheck>(); }

std::unique_ptr<FileReveal> fileReveal() { return std::make_unique<FinderReveal>(); }

std::unique_ptr<WidgetTimelines> widgetTimelines() {
    return std::make_unique<MacWidgetTimelines>();
}

std::unique_ptr<Notifications> notifications() { return std::make_unique<MacNotifications>(); }

std::unique_ptr<LoginItem> loginItem() { return std::make_unique<MacLoginItem>(); }

std::unique_ptr<MotionSetting> motionSetting() { return std::make_unique<MacMotion>(); }

std::unique_ptr<GlobalHotKey> globalHotKey() { return std::make_unique<MacHotKey>(); }

std::unique_ptr<KeyWatch> keyWatch() { return std::make_unique<MacKeyWatch>(); }

std::unique_ptr<MailComposer> mailComposer() { return std::make_unique<MacMail>(); }

std::unique_ptr<DockPresence> dockPresence() { return std::make_unique<MacDock>(); }

std::unique_ptr<UpdateEngine> updateEngine() {
#if defined(VORLE_HAS_SPARKLE)
    return std::make_unique<SparkleEngine>();
#else
    return nullptr;
#endif
}

QString programVersion() { return bundleVersion(); }

} // namespace vorle::native
