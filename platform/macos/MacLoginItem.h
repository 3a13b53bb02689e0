#pragma once

#include "platform/LoginItem.h"

#include <memory>

namespace vorle {

/// SMAppService's main app service: the system opens the app's bundle without any argument, and
/// says in the first event that it did. To be made before the event loop turns.
class MacLoginItem final : public LoginItem {
public:
    MacLoginItem();
    ~MacLoginItem() override;
    MacLoginItem(const MacLoginItem &) = delete;
    MacLoginItem &operator=(const MacLoginItem &) = delete;

    Task<State> state() override;
    QString remedy(State state) const override;
    bool openedThis() const override { return *m_opened; }
    Task<std::optional<QString>> set(bool on) override;

private:
    std::shared_ptr<bool> m_opened = std::make_shared<bool>(false);
    const void *m_observer = nullptr; // owned
};

} // namespace vorle
