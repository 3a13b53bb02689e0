#include "platform/macos/MacHotKey.h"

#import <Carbon/Carbon.h>

namespace vorle {

namespace {

constexpr EventHotKeyID ours{'vorl', 1};

OSStatus hotKeyPressed(EventHandlerCallRef, EventRef event, void *hotKey) {
    EventHotKeyID id{};
    const OSStatus read = GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID,
                                            nullptr, sizeof id, nullptr, &id);
    if (read != noErr || id.signature != ours.signature || id.id != ours.id) {
        return eventNotHandledErr;
    }
    static_cast<const MacHotKey *>(hotKey)->press();
    return noErr;
}

} // namespace

MacHotKey::MacHotKey() {
    constexpr EventTypeSpec pressed{kEventClassKeyboard, kEventHotKeyPressed};
    InstallEventHandler(GetApplicationEventTarget(), hotKeyPressed, 1, &pressed, this, &m_handler);
}

MacHotKey::~MacHotKey() {
    m_changed = {};
    replace(std::nullopt);
    if (m_handler != nullptr) {
        RemoveEventHandler(m_handler);
    }
}

void MacHotKey::follow(std::function<void()> pressed, std::function<void()> changed) {
    m_pressed = std::move(pressed);
    m_changed = std::move(changed);
}

void MacHotKey::press() const {
    if (m_pressed) {
        m_pressed();
    }
}

void MacHotKey::replace(const std::optional<KeyCombination> &combination) {
    if (m_key != nullptr) {
        UnregisterEventHotKey(m_key);
        m_key = nullptr;
    }
    const State before = m_state;
    m_state = State::None;
    if (combination) {
        const OSStatus status = RegisterEventHotKey(static_cast<UInt32>(combination->keyCode),
                                                    static_cast<UInt32>(combination->modifiers),
                                                    ours, GetApplicationEventTarget(), 0, &m_key);
        m_state = status == noErr                  ? State::Registered
                  : status == eventHotKeyExistsErr ? State::Taken
                                                   : State::Unavailable;
    }
    if (m_state != before && m_changed) {
        m_changed();
    }
}

} // namespace vorle
