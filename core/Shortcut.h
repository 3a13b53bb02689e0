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
    /// No combination at all.
    static Shortcut none() { return {-1, 0, {}}; }
    bool isNone() const { return *this == none(); }
    /// Whether it can be registered, or is none: with Command, Option or Control; Shift alone is
    /// not enough.
    bool isValid() const {
        constexpr int lastCode = 0x7F;
        constexpr qsizetype longestKey = 8;
        return isNone() || ((modifiers & 0x1900) != 0 && keyCode >= 0 && keyCode <= lastCode &&
                            !key.isEmpty() && key.size() <= longestKey);
    }
    bool operator==(const Shortcut &) const = default;
};

} // namespace vorle
