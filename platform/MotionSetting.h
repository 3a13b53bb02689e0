#pragma once

#include <functional>

namespace vorle {

/// Whether the system asks its programs for less motion. Main thread.
class MotionSetting {
public:
    virtual ~MotionSetting() = default;

    /// False as long as the system has not said otherwise.
    virtual bool isReduced() const = 0;

    /// `changed` is called each time the answer has changed, until the next call or the end of this
    /// object; an empty one stops it.
    virtual void follow(std::function<void()> changed) = 0;
};

} // namespace vorle
