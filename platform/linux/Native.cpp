#include "platform/Native.h"

#include "platform/linux/AutostartItem.h"
#include "platform/linux/BusNotifications.h"
#include "platform/linux/DesktopApps.h"
#include "platform/linux/DesktopMail.h"
#include "platform/linux/DesktopReveal.h"
#include "platform/linux/LinuxTerminals.h"
#include "platform/linux/PortalHotKey.h"
#include "platform/linux/PortalMotion.h"
#include "platform/linux/X11HotKey.h"
#include "platform/qt/QtKeyWatch.h"

#include <QGuiApplication>

namespace vorle::native {

namespace {

/// Here widgets and bars watch the file, or read it when they like.
class FileAlone final : public WidgetTimelines {
public:
    void reload() override {}
};

/// Desktops list the windows that there are.
class WindowsAlone final : public DockPresence {
public:
    void show(bool) override {}
};

} // namespace

std::unique_ptr<InstalledApps> installedApps() {
    return std::make_unique<DesktopApps>(DesktopApps::Setting::ofThisProcess());
}

std::unique_ptr<Terminals> terminals() {
    return std::make_unique<LinuxTerminals>(LinuxTerminals::Setting::ofThisProcess());
}

// Share sheets and scripts drop beside the topics, and a folder that changes tells by itself. No
// desktop lets a program see the tab of another's window.
std::unique_ptr<SharedContainer> sharedContainer() { return nullptr; }
std::unique_ptr<DropSignal> dropSignal() { return nullptr; }
std::unique_ptr<FrontBrowser> frontBrowser() { return nullptr; }

// Programs bear no signature here; packages are checked by what installs them.
std::unique_ptr<SignatureCheck> signatureCheck() { return nullptr; }

std::unique_ptr<FileReveal> fileReveal() { return std::make_unique<DesktopReveal>(); }

std::unique_ptr<DockPresence> dockPresence() { return std::make_unique<WindowsAlone>(); }

std::unique_ptr<WidgetTimelines> widgetTimelines() { return std::make_unique<FileAlone>(); }

std::unique_ptr<Notifications> notifications() { return std::make_unique<BusNotifications>(); }

std::unique_ptr<LoginItem> loginItem() {
    return std::make_unique<AutostartItem>(AutostartItem::Setting::ofThisProcess());
}

std::unique_ptr<MotionSetting> motionSetting() { return std::make_unique<PortalMotion>(); }

/// A Wayland desktop shows X11 programs too, and lets none of them have a key of the others.
std::unique_ptr<GlobalHotKey> globalHotKey() {
    const QString platform = QGuiApplication::platformName();
    if (platform == u"xcb" && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        return std::make_unique<X11HotKey>();
    }
    return std::make_unique<PortalHotKey>();
}

std::unique_ptr<KeyWatch> keyWatch() { return std::make_unique<QtKeyWatch>(); }

std::unique_ptr<MailComposer> mailComposer() { return std::make_unique<DesktopMail>(); }

std::unique_ptr<UpdateEngine> updateEngine() { return nullptr; }

QString programVersion() { return {}; }

} // namespace vorle::native
