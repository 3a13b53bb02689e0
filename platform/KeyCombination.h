#pragma once

#include <QString>

namespace vorle {

/// A key and what is held with it.
struct KeyCombination {
    static constexpr int command = 0x100; ///< ⌘; elsewhere the key that opens the system's menu
    static constexpr int shift = 0x200;
    static constexpr int option = 0x800; ///< ⌥, Alt
    static constexpr int control = 0x1000;

    int keyCode = 0;   ///< where the key lies: a Mac's virtual key code
    int modifiers = 0; ///< of those above
    QString key;       ///< what it types alone ("a", " "), or what stands for it ("F5", "↩")

    bool operator==(const KeyCombination &) const = default;
};

} // namespace vorle
