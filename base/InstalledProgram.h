#pragma once

#include <QString>

namespace vorle {

/// The folder of the installation (InstallationLayout.h) that a program lies in, whatever links it
/// is named by; "" where it lies in none. Any thread.
QString installationFolder(const QString &program);

/// What to start for this program to run, and what to write down for others to start: the launcher
/// where it lies in an installation, since a version's own path goes with that version; else the
/// program itself. Needs an application object.
QString programToStart();

} // namespace vorle
