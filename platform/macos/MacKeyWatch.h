#pragma once

#include "platform/KeyWatch.h"

namespace vorle {

/// A local monitor of the application's key events.
class MacKeyWatch final : public KeyWatch {
public:
    MacKeyWatch() = default;
    ~MacKeyWatch() override { stop(); }
    MacKeyWatch(const MacKeyWatch &) = delete;
    MacKeyWatch &operator=(const MacKeyWatch &) = delete;

    void start(std::function<void(const KeyCombination &)> pressed) override;
    void stop() override;

private:
    const void *m_monitor = nullptr; // owned
    std::function<void(const KeyCombination &)> m_pressed;
};

} // namespace vorle
