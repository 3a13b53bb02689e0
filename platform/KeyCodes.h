#pragma once

#include <QString>

namespace vorle::keys {

// Virtual key codes of a Mac that mean something of their own.
inline constexpr int space = 0x31;
inline constexpr int backspace = 0x33;
inline constexpr int escape = 0x35;

/// The virtual key code of the key that Linux counts so (of its event devices; a window system adds
/// 8), nothing (-1) for one that a Mac's keyboard does not have; and the way back.
int fromLinux(int code);
int toLinux(int keyCode);

/// What stands for a key that types nothing: "F5", "↩"; "" for one that types something.
QString sign(int keyCode);

} // namespace vorle::keys
