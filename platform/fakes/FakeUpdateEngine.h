#pragma once

#include "platform/UpdateEngine.h"

#include <utility>

namespace vorle::test {

/// An engine that does nothing by itself: a test plays its part by calling `driver`.
class FakeUpdateEngine final : public UpdateEngine {
public:
    void start(UpdateDriver &told) override { driver = &told; }
    std::optional<QString> obstacle() const override { return why; }
    void check() override { ++checks; }
    void lookAtClock() override { ++looks; }
    bool checksByItself() const override { return daily; }
    void setChecksByItself(bool on) override { daily = on; }
    bool installsByItself() const override { return installs; }
    void setInstallsByItself(bool on) override { installs = on; }
    void stop(std::function<void()> ended) override { ended(); }
    void confirmStart() override {}
    void finish(std::function<void(std::optional<QString>)> done) override { done(std::nullopt); }

    UpdateDriver *driver = nullptr;
    std::optional<QString> why;
    int checks = 0;
    int looks = 0; ///< at the clock
    bool daily = false;
    bool installs = false;
};

} // namespace vorle::test
