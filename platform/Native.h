#pragma once

#include "platform/InstalledApps.h"

#include <memory>

/// The adapters of the system the program was built for. Linked by the program itself and nothing
/// else: whoever works with an adapter gets it handed as its interface.
namespace vorle::native {

std::unique_ptr<InstalledApps> installedApps();

} // namespace vorle::native
