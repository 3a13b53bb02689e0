#pragma once

#include "platform/FilePicker.h"
#include "platform/FileReveal.h"
#include "platform/InstalledApps.h"
#include "platform/LinkOpener.h"
#include "platform/MotionSetting.h"
#include "platform/Pasteboard.h"
#include "platform/Terminals.h"

#include <memory>

/// The adapters of the system the program was built for. Linked by the program itself and nothing
/// else: whoever works with an adapter gets it handed as its interface.
namespace vorle::native {

std::unique_ptr<InstalledApps> installedApps();
std::unique_ptr<Terminals> terminals();

// These need a QGuiApplication when they are used.
std::unique_ptr<Pasteboard> pasteboard();
std::unique_ptr<LinkOpener> linkOpener();
std::unique_ptr<FilePicker> filePicker(); // a QApplication
std::unique_ptr<FileReveal> fileReveal();
std::unique_ptr<MotionSetting> motionSetting();

} // namespace vorle::native
