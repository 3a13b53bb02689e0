#include "platform/Native.h"

#include "platform/linux/DesktopApps.h"

namespace vorle::native {

std::unique_ptr<InstalledApps> installedApps() {
    return std::make_unique<DesktopApps>(DesktopApps::Setting::ofThisProcess());
}

} // namespace vorle::native
