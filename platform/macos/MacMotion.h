#pragma once

#include "platform/MotionSetting.h"

namespace vorle {

/// The system settings' "Reduce motion", followed through the workspace's notifications.
class MacMotion final : public MotionSetting {
public:
    MacMotion();
    ~MacMotion() override;
    MacMotion(const MacMotion &) = delete;
    MacMotion &operator=(const MacMotion &) = delete;

    bool isReduced() const override;
    void follow(std::function<void()> changed) override { m_changed = std::move(changed); }

private:
    const void *m_observer = nullptr; // owned
    std::function<void()> m_changed;
};

} // namespace vorle
