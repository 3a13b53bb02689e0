#pragma once

#include <functional>

namespace vorle {

/// The word that the share sheet gives once it has dropped a link. Main thread.
class DropSignal {
public:
    virtual ~DropSignal() = default;

    /// `dropped` is called after each drop, until the next call or the end of this object; an empty
    /// one stops it.
    virtual void follow(std::function<void()> dropped) = 0;
};

} // namespace vorle
