#include "platform/macos/MacMotion.h"

#import <AppKit/AppKit.h>

namespace vorle {

MacMotion::MacMotion() {
    id observer = [[[NSWorkspace sharedWorkspace] notificationCenter]
        addObserverForName:NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification
                    object:nil
                     queue:[NSOperationQueue mainQueue]
                usingBlock:^(NSNotification *) {
                  if (m_changed) {
                      m_changed();
                  }
                }];
    m_observer = CFBridgingRetain(observer);
}

MacMotion::~MacMotion() {
    id observer = CFBridgingRelease(m_observer);
    [[[NSWorkspace sharedWorkspace] notificationCenter] removeObserver:observer];
}

bool MacMotion::isReduced() const {
    return [[NSWorkspace sharedWorkspace] accessibilityDisplayShouldReduceMotion];
}

} // namespace vorle
