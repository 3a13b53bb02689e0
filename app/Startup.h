#pragma once

#include "app/Application.h"

#include <memory>

namespace vorle {

class Demonstration;

/// How the program starts, with a screen or without.

/// Makes a demonstration and turns this process towards it: its agent, its home, its site. The
/// demonstration keeps to its own topics file, whatever file the person named.
/// @throws std::runtime_error (French) as Demonstration::start
std::unique_ptr<Demonstration> enterDemonstration();

/// What the application is made of: the user's own files, or the demonstration's.
Application::Setup setupFor(const Demonstration *demonstration, const InstalledApps &installedApps);

} // namespace vorle
