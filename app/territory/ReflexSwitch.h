#pragma once

#include "core/Preferences.h"

namespace vorle {

/// What the user thinks of what was learned of them, from the window and from the command line.
/// Main thread.

/// Whether the reflex of that identifier is left on.
bool isReflexOn(const Settings &settings, const QString &id);

/// Switches it. One that is off is still learned, and no longer applied.
void setReflexOn(Preferences &preferences, const QString &id, bool on);

/// Only decisions after `now` count from now on. What was switched off stays so: the same rule may
/// be learned again.
void startLearningAgain(Preferences &preferences, const QDateTime &now);

} // namespace vorle
