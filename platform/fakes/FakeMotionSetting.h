#pragma once

#include "platform/MotionSetting.h"

namespace vorle::test {

/// Says what it is told to say.
class FakeMotionSetting final : public MotionSetting {
public:
    bool isReduced() const override { return m_reduced; }
    void follow(std::function<void()> changed) override { m_changed = std::move(changed); }

    void turn(bool reduced) {
        m_reduced = reduced;
        if (m_changed) {
            m_changed();
        }
    }

private:
    bool m_reduced = false;
    std::function<void()> m_changed;
};

} // namespace vorle::test
