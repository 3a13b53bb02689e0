#pragma once

#include "../Foundation/Foundation.h"

@class NSImage;

@interface NSRunningApplication : NSObject
@property(class, readonly, strong) NSRunningApplication *currentApplication;
@property(readonly, copy) NSString *bundleIdentifier;
@property(readonly, copy) NSString *localizedName;
@property(readonly) int processIdentifier;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace *sharedWorkspace;
@property(readonly, strong) NSNotificationCenter *notificationCenter;
@property(readonly, strong) NSRunningApplication *frontmostApplication;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
- (NSURL *)URLForApplicationToOpenURL:(NSURL *)url;
- (NSURL *)URLForApplicationWithBundleIdentifier:(NSString *)identifier;
- (BOOL)openURL:(NSURL *)url;
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL *> *)urls;
@end
extern NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification;
extern NSNotificationName const NSWorkspaceDidActivateApplicationNotification;
extern NSNotificationName const NSApplicationDidFinishLaunchingNotification;

typedef NSString *NSSharingServiceName;
extern NSSharingServiceName const NSSharingServiceNameComposeEmail;
@interface NSSharingService : NSObject
+ (NSSharingService *)sharingServiceNamed:(NSSharingServiceName)name;
@property(copy) NSArray<NSString *> *recipients;
@property(copy) NSString *subject;
- (BOOL)canPerformWithItems:(NSArray *)items;
- (void)performWithItems:(NSArray *)items;
@end

typedef NSString *NSPasteboardType;
extern NSPasteboardType const NSPasteboardTypeString;
extern NSPasteboardType const NSPasteboardTypeURL;
@interface NSPasteboard : NSObject
@property(class, readonly, strong) NSPasteboard *generalPasteboard;
@property(readonly) NSInteger changeCount;
- (NSString *)stringForType:(NSPasteboardType)type;
- (NSInteger)clearContents;
- (BOOL)setString:(NSString *)text forType:(NSPasteboardType)type;
@end

typedef enum : NSUInteger {
    NSEventModifierFlagCapsLock = 1 << 16,
    NSEventModifierFlagShift = 1 << 17,
    NSEventModifierFlagControl = 1 << 18,
    NSEventModifierFlagOption = 1 << 19,
    NSEventModifierFlagCommand = 1 << 20,
    NSEventModifierFlagDeviceIndependentFlagsMask = 0xffff0000UL
} NSEventModifierFlags;
typedef enum : unsigned long long { NSEventMaskKeyDown = 1ULL << 10 } NSEventMask;
@interface NSEvent : NSObject
@property(readonly) unsigned short keyCode;
@property(readonly) NSEventModifierFlags modifierFlags;
@property(readonly) BOOL isARepeat;
@property(readonly, copy) NSString *characters;
@property(readonly, copy) NSString *charactersIgnoringModifiers;
+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask
                                   handler:(NSEvent * (^)(NSEvent *event))block;
+ (void)removeMonitor:(id)monitor;
@end

@interface NSWindow : NSObject
- (void)makeKeyAndOrderFront:(id)sender;
@end
typedef enum NSApplicationActivationPolicy : NSInteger {
    NSApplicationActivationPolicyRegular,
    NSApplicationActivationPolicyAccessory,
    NSApplicationActivationPolicyProhibited
} NSApplicationActivationPolicy;

@interface NSApplication : NSObject
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (NSApplicationActivationPolicy)activationPolicy;
@property(class, readonly, strong) NSApplication *sharedApplication;
@property(readonly, strong) NSWindow *keyWindow;
@property(getter=isActive, readonly) BOOL active;
- (void)activateIgnoringOtherApps:(BOOL)flag API_UNTIL(10.0, 14.0);
- (void)activate API_SINCE(14.0);
@end
extern NSApplication *NSApp;
