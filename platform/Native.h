#pragma once

#include "platform/DockPresence.h"
#include "platform/DropSignal.h"
#include "platform/FilePicker.h"
#include "platform/FileReveal.h"
#include "platform/FrontBrowser.h"
#include "platform/GlobalHotKey.h"
#include "platform/InstalledApps.h"
#include "platform/KeyWatch.h"
#include "platform/LinkOpener.h"
#include "platform/LoginItem.h"
#include "platform/MailComposer.h"
#include "platform/MotionSetting.h"
#include "platform/Notifications.h"
#include "platform/Pasteboard.h"
#include "platform/SharedContainer.h"
#include "platform/SignatureCheck.h"
#include "platform/Terminals.h"
#include "platform/UpdateEngine.h"
#include "platform/WidgetTimelines.h"

#include <memory>

/// The adapters of the system the program was built for. Linked by the program itself and nothing
/// else: whoever works with an adapter gets it handed as its interface.
namespace vorle::native {

std::unique_ptr<InstalledApps> installedApps();
std::unique_ptr<Terminals> terminals();
std::unique_ptr<WidgetTimelines> widgetTimelines();

// Null where the system has no such thing.
std::unique_ptr<SharedContainer> sharedContainer();
std::unique_ptr<DropSignal> dropSignal();
std::unique_ptr<FrontBrowser> frontBrowser();
std::unique_ptr<SignatureCheck> signatureCheck();

// These need a QGuiApplication when they are used.
std::unique_ptr<Pasteboard> pasteboard();
std::unique_ptr<LinkOpener> linkOpener();
std::unique_ptr<FilePicker> filePicker(); // a QApplication
std::unique_ptr<FileReveal> fileReveal();
std::unique_ptr<MotionSetting> motionSetting();
std::unique_ptr<Notifications> notifications();
std::unique_ptr<LoginItem> loginItem();
std::unique_ptr<GlobalHotKey> globalHotKey();
std::unique_ptr<KeyWatch> keyWatch();
std::unique_ptr<MailComposer> mailComposer();
std::unique_ptr<DockPresence> dockPresence();

/// What the system updates its programs by; null where it has nothing of the kind.
std::unique_ptr<UpdateEngine> updateEngine();

/// The program's version as the system has it, with its build; "" where it knows none.
QString programVersion();

} // namespace vorle::native
