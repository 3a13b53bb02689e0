#pragma once

#include "app/models/KeyboardMap.h"
#include "core/Shortcut.h"

namespace vorle {

/// A combination as it is shown: its modifiers in the order ⌃⌥⇧⌘, then the key in upper case, the
/// space bar being "Espace": "⌃⌥ Espace", "⌃⇧A". In words: "Ctrl+Alt+Espace", "Ctrl+Maj+A"; Command
/// is the key that opens the system's menu there, "Super". "" for none.
QString shortcutText(const Shortcut &shortcut, KeySpelling spelling);

} // namespace vorle
