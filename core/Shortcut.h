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
    bool operator==(const Shortcut &) const = default;
};

} // namespace vorle
