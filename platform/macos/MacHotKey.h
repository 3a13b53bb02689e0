#pragma once

#include "platform/GlobalHotKey.h"

struct OpaqueEventHandlerRef;
struct EventHotKeyRef__;

namespace vorle {

/// Carbon's hot keys, which need no right to listen to the keyboard. The handler is installed once;
/// the key that is registered has the signature "vorl" and the number 1. Whether another program
/// has the combination is told where it has it for itself alone; others share it.
class MacHotKey final : public GlobalHotKey {
public:
    MacHotKey();
    ~MacHotKey() override;
    MacHotKey(const MacHotKey &) = delete;
    MacHotKey &operator=(const MacHotKey &) = delete;

    void replace(const std::optional<KeyCombination> &combination) override;
    State state() const override { return m_state; }
    void follow(std::function<void()> pressed, std::function<void()> changed) override;

    /// For the handler.
    void press() const;

private:
    OpaqueEventHandlerRef *m_handler = nullptr;
    EventHotKeyRef__ *m_key = nullptr;
    State m_state = State::None;
    std::function<void()> m_pressed;
    std::function<void()> m_changed;
};

} // namespace vorle
