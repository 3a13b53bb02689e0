#pragma once

#include "platform/UpdateEngine.h"

#include <functional>
#include <memory>
#include <optional>

namespace vorle {

/// Sparkle as an engine, with the views of this program in place of its own. Feed and key stand in
/// the bundle's Info.plist (SUFeedURL, SUPublicEDKey); VORLE_UPDATE_FEED replaces the feed. It
/// keeps its settings, and its clock, itself.
class SparkleEngine final : public UpdateEngine {
public:
    SparkleEngine();
    ~SparkleEngine() override;
    SparkleEngine(const SparkleEngine &) = delete;
    SparkleEngine &operator=(const SparkleEngine &) = delete;

    void start(UpdateDriver &driver) override;
    std::optional<QString> obstacle() const override;
    void check() override;
    void lookAtClock() override {} // it has its own
    bool checksByItself() const override;
    void setChecksByItself(bool on) override;
    bool installsByItself() const override;
    void setInstallsByItself(bool on) override;
    void stop(std::function<void()> ended) override;
    void confirmStart() override {}
    void finish(std::function<void(std::optional<QString>)> done) override {
        done(std::nullopt); // it relaunches by itself
    }

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

} // namespace vorle
