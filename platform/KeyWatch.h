#pragma once

#include "platform/KeyCombination.h"

#include <functional>

namespace vorle {

/// The keys that are pressed in this program's windows, taken before anything else gets them. Main
/// thread; needs a QGuiApplication.
class KeyWatch {
public:
    virtual ~KeyWatch() = default;

    /// Each press goes to `pressed` and nowhere else, until `stop()`, which may be called from it.
    /// A key that is held is pressed once; modifiers alone are none. A key that has no place on a
    /// Mac's keyboard has the code -1.
    virtual void start(std::function<void(const KeyCombination &)> pressed) = 0;
    virtual void stop() = 0;
};

} // namespace vorle
