#pragma once

#include "base/Json.h"

#include <QString>

namespace vorle {

/// A recorded key combination. Key codes and modifier flags are those of the Carbon hot-key
/// convention: Command 0x100, Shift 0x200, Option 0x800, Control 0x1000; 49 is the space bar.
struct Shortcut {
    int keyCode = 49;
    int modifiers = 0x1000 | 0x800;
    QString key = QStringLiteral(" ");

    static constexpr auto jsonFields() {
        return std::tuple(json::field("keyCode", &Shortcut::keyCode),
                          json::field("modifiers", &Shortcut::modifiers),
                          json::field("key", &Shortcut::key));
    }
    /// Whether it can be registered: with Command, Option or Control; Shift alone is not enough.
    bool isValid() const { return (modifiers & 0x1900) != 0 && keyCode >= 0; }
    bool operator==(const Shortcut &) const = default;
};

} // namespace vorle
