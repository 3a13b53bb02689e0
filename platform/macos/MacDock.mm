#include "platform/macos/MacDock.h"

#import <AppKit/AppKit.h>

namespace vorle {

void MacDock::show(bool shown) {
    const NSApplicationActivationPolicy wanted =
        shown ? NSApplicationActivationPolicyRegular : NSApplicationActivationPolicyAccessory;
    if ([NSApp activationPolicy] == wanted) {
        return;
    }
    [NSApp setActivationPolicy:wanted];
    if (!shown) {
        return;
    }
    // The menus of one that was none of the regular ones come with its next activation only.
    if (@available(macOS 14, *)) {
        [NSApp activate];
    } else {
        [NSApp activateIgnoringOtherApps:YES];
    }
}

} // namespace vorle
