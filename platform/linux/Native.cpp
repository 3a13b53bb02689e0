#include "platform/Native.h"

#include "platform/linux/DesktopApps.h"
#include "platform/linux/DesktopReveal.h"
#include "platform/linux/LinuxTerminals.h"
#include "platform/linux/PortalMotion.h"

namespace vorle::native {

std::unique_ptr<InstalledApps> installedApps() {
    return std::make_unique<DesktopApps>(DesktopApps::Setting::ofThisProcess());
}

std::unique_ptr<Terminals> terminals() {
    return std::make_unique<LinuxTerminals>(LinuxTerminals::Setting::ofThisProcess());
}

std::unique_ptr<FileReveal> fileReveal() { return std::make_unique<DesktopReveal>(); }

std::unique_ptr<MotionSetting> motionSetting() { return std::make_unique<PortalMotion>(); }

} // namespace vorle::native
