#pragma once

#include "platform/DropSignal.h"
#include "platform/SharedContainer.h"

namespace vorle {

/// The container of the app group that the share and widget extensions belong to as well.
class AppGroupContainer final : public SharedContainer {
public:
    std::optional<QString> folder() const override;
};

/// The distributed notification that the share extension posts.
class DistributedDropSignal final : public DropSignal {
public:
    DistributedDropSignal();
    ~DistributedDropSignal() override;
    DistributedDropSignal(const DistributedDropSignal &) = delete;
    DistributedDropSignal &operator=(const DistributedDropSignal &) = delete;

    void follow(std::function<void()> dropped) override { m_dropped = std::move(dropped); }

private:
    const void *m_observer = nullptr; // owned
    std::function<void()> m_dropped;
};

} // namespace vorle
