#include "platform/macos/MacKeyWatch.h"

#include "platform/KeyCodes.h"

#import <AppKit/AppKit.h>

namespace vorle {

namespace {

int carbon(NSEventModifierFlags flags) {
    return ((flags & NSEventModifierFlagCommand) != 0 ? KeyCombination::command : 0) |
           ((flags & NSEventModifierFlagShift) != 0 ? KeyCombination::shift : 0) |
           ((flags & NSEventModifierFlagOption) != 0 ? KeyCombination::option : 0) |
           ((flags & NSEventModifierFlagControl) != 0 ? KeyCombination::control : 0);
}

KeyCombination combinationOf(NSEvent *event) {
    KeyCombination combination{event.keyCode, carbon(event.modifierFlags),
                               keys::sign(event.keyCode)};
    if (combination.key.isEmpty()) {
        combination.key = QString::fromNSString(event.charactersIgnoringModifiers).toLower();
    }
    if (combination.key.isEmpty()) {
        combination.keyCode = -1; // a dead key types nothing by itself
    }
    return combination;
}

} // namespace

void MacKeyWatch::start(std::function<void(const KeyCombination &)> pressed) {
    m_pressed = std::move(pressed);
    if (m_monitor != nullptr) {
        return;
    }
    id monitor = [NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                                       handler:^NSEvent *(NSEvent *event) {
                                                         if (!event.isARepeat && m_pressed) {
                                                             const auto heard =
                                                                 m_pressed; // it may stop this
                                                             heard(combinationOf(event));
                                                         }
                                                         return nil;
                                                       }];
    m_monitor = CFBridgingRetain(monitor);
}

void MacKeyWatch::stop() {
    m_pressed = {};
    if (m_monitor != nullptr) {
        id monitor = CFBridgingRelease(m_monitor);
        m_monitor = nullptr;
        [NSEvent removeMonitor:monitor];
    }
}

} // namespace vorle
