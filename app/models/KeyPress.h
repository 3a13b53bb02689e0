#pragma once

#include <QtGlobal>

namespace vorle {

/// A press as a table of keys writes it, whatever keyboard it is typed on. On a French one the
/// digits need Shift, and without it their keys give other signs; "?", "/" and "+" need Shift there
/// or elsewhere. A value.
struct KeyPress {
    int key = 0;       ///< Qt::Key
    int modifiers = 0; ///< Qt::KeyboardModifiers, without what the sign itself needs

    /// @param scanCode  the event's own, which tells the 6 of a PC's French keyboard from a minus
    /// sign
    static KeyPress of(int key, int modifiers, quint32 scanCode = 0);
};

} // namespace vorle
