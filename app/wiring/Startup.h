#pragma once

#include "app/wiring/Application.h"
#include "platform/SharedContainer.h"

#include <memory>

namespace vorle {

class Demonstration;

/// How the program starts, with a screen or without.

/// Takes the variables that place folders (XDG_…_HOME, XDG_RUNTIME_DIR) out of this process's
/// environment where they are relative, as their standard asks, for us and for our children. To be
/// called before anything else looks at them.
void ignoreRelativeFolders();

/// @throws std::system_error where the system does not let this process start the threads that it
///   works with: it would wait for ever for work that nobody does
void requireThreads();

/// Makes a demonstration and turns this process towards it: its agent, its home, its site. The
/// demonstration keeps to its own topics file, whatever file the person named.
/// @throws std::runtime_error (French) as Demonstration::start
std::unique_ptr<Demonstration> enterDemonstration();

/// What the application is made of: the user's own files, or the demonstration's, which is not
/// updated. `container` may be null.
Application::Setup setupFor(const Demonstration *demonstration, const InstalledApps &installedApps,
                            const SharedContainer *container, const UpdateConfig &updates);

} // namespace vorle
