#pragma once

#include "core/ScoreScale.h"
#include "core/Settings.h"

namespace vorle {

/// The colour of an accent, for what is drawn outside of the window; inside, the theme has it.
/// Pure.
ModeColour accentColour(Accent accent);

} // namespace vorle
