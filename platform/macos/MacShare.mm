#include "platform/macos/MacShare.h"

#import <Foundation/Foundation.h>
#import <Security/Security.h>

/// Hears of drops.
@interface VorleDropListener : NSObject
@property(copy) void (^dropped)(void);
- (void)hear:(NSNotification *)notification;
@end

@implementation VorleDropListener
- (void)hear:(NSNotification *)notification {
    (void)notification;
    if (self.dropped) {
        self.dropped();
    }
}
@end

namespace vorle {

namespace {

/// As the entitlements of the app and of both extensions name it: the team that signed the app, a
/// point, and the app's identifier. Nil for an app that no team signed: it belongs to no group.
NSString *appGroup() {
    SecCodeRef code = nullptr;
    CFDictionaryRef told = nullptr;
    NSString *group = nil;
    if (SecCodeCopySelf(kSecCSDefaultFlags, &code) == errSecSuccess &&
        SecCodeCopySigningInformation(code, kSecCSSigningInformation, &told) == errSecSuccess) {
        NSDictionary *information = (__bridge NSDictionary *)told;
        NSString *team = information[(__bridge NSString *)kSecCodeInfoTeamIdentifier];
        NSString *own = [[NSBundle mainBundle] bundleIdentifier];
        if (team != nil && own != nil) {
            group = [NSString stringWithFormat:@"%@.%@", team, own];
        }
    }
    for (CFTypeRef object : {static_cast<CFTypeRef>(told), static_cast<CFTypeRef>(code)}) {
        if (object != nullptr) {
            CFRelease(object);
        }
    }
    return group;
}

} // namespace

std::optional<QString> AppGroupContainer::folder() const {
    NSString *group = appGroup();
    NSURL *container = group == nil ? nil
                                    : [[NSFileManager defaultManager]
                                          containerURLForSecurityApplicationGroupIdentifier:group];
    NSString *path = [container path];
    return path == nil ? std::nullopt : std::optional(QString::fromNSString(path));
}

DistributedDropSignal::DistributedDropSignal() {
    NSString *own = [[NSBundle mainBundle] bundleIdentifier];
    if (own == nil) {
        return; // started outside its bundle: there is no extension either
    }
    VorleDropListener *listener = [[VorleDropListener alloc] init];
    listener.dropped = ^{
      if (m_dropped) {
          m_dropped();
      }
    };
    // At once: else it would wait until the app comes to the front, which lives in the menu bar.
    [[NSDistributedNotificationCenter defaultCenter]
               addObserver:listener
                  selector:@selector(hear:)
                      name:[own stringByAppendingString:@".share.dropped"]
                    object:nil
        suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
    m_observer = CFBridgingRetain(listener);
}

DistributedDropSignal::~DistributedDropSignal() {
    if (m_observer != nullptr) {
        id observer = CFBridgingRelease(m_observer);
        [[NSDistributedNotificationCenter defaultCenter] removeObserver:observer];
    }
}

} // namespace vorle
