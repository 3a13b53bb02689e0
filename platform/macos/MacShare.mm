#include "platform/macos/MacShare.h"

#import <Foundation/Foundation.h>

namespace vorle {

namespace {

/// As the entitlements of the app and of both extensions name it.
NSString *const appGroup = @"group.fr.vorle.vorle";

} // namespace

std::optional<QString> AppGroupContainer::folder() const {
    NSURL *container =
        [[NSFileManager defaultManager] containerURLForSecurityApplicationGroupIdentifier:appGroup];
    NSString *path = [container path];
    return path == nil ? std::nullopt : std::optional(QString::fromNSString(path));
}

DistributedDropSignal::DistributedDropSignal() {
    NSString *own = [[NSBundle mainBundle] bundleIdentifier];
    if (own == nil) {
        return; // started outside its bundle: there is no extension either
    }
    id observer = [[NSDistributedNotificationCenter defaultCenter]
        addObserverForName:[own stringByAppendingString:@".share.dropped"]
                    object:nil
                     queue:[NSOperationQueue mainQueue]
                usingBlock:^(NSNotification *) {
                  if (m_dropped) {
                      m_dropped();
                  }
                }];
    m_observer = CFBridgingRetain(observer);
}

DistributedDropSignal::~DistributedDropSignal() {
    if (m_observer != nullptr) {
        id observer = CFBridgingRelease(m_observer);
        [[NSDistributedNotificationCenter defaultCenter] removeObserver:observer];
    }
}

} // namespace vorle
