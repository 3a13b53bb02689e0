#pragma once

#include "../Foundation/Foundation.h"

@class UNNotification, UNNotificationResponse, UNNotificationSettings, UNUserNotificationCenter;

typedef enum : NSUInteger {
    UNAuthorizationOptionBadge = 1 << 0,
    UNAuthorizationOptionSound = 1 << 1,
    UNAuthorizationOptionAlert = 1 << 2
} UNAuthorizationOptions;
typedef enum : NSInteger {
    UNAuthorizationStatusNotDetermined,
    UNAuthorizationStatusDenied,
    UNAuthorizationStatusAuthorized,
    UNAuthorizationStatusProvisional
} UNAuthorizationStatus;
typedef enum : NSUInteger {
    UNNotificationPresentationOptionSound = 1 << 1,
    UNNotificationPresentationOptionList = 1 << 3,
    UNNotificationPresentationOptionBanner = 1 << 4
} UNNotificationPresentationOptions;
typedef enum : NSUInteger {
    UNNotificationActionOptionForeground = 1 << 2
} UNNotificationActionOptions;
typedef enum : NSUInteger { UNNotificationCategoryOptionNone = 0 } UNNotificationCategoryOptions;

extern NSString *const UNNotificationDefaultActionIdentifier;
extern NSString *const UNNotificationDismissActionIdentifier;

@interface UNNotificationSound : NSObject <NSCopying>
@property(class, readonly, strong) UNNotificationSound *defaultSound;
@end
@interface UNNotificationAttachment : NSObject
+ (instancetype)attachmentWithIdentifier:(NSString *)identifier
                                     URL:(NSURL *)url
                                 options:(NSDictionary *)options
                                   error:(NSError **)error;
@end
@interface UNNotificationContent : NSObject <NSCopying>
@property(readonly, copy) NSString *title;
@property(readonly, copy) NSString *body;
@property(readonly, copy) NSDictionary *userInfo;
@end
@interface UNMutableNotificationContent : UNNotificationContent
@property(copy) NSString *title;
@property(copy) NSString *subtitle;
@property(copy) NSString *body;
@property(copy) NSString *categoryIdentifier;
@property(copy) NSString *threadIdentifier;
@property(copy) NSDictionary *userInfo;
@property(copy) NSArray<UNNotificationAttachment *> *attachments;
@property(copy) UNNotificationSound *sound;
@end
@interface UNNotificationTrigger : NSObject
@end
@interface UNCalendarNotificationTrigger : UNNotificationTrigger
+ (instancetype)triggerWithDateMatchingComponents:(NSDateComponents *)components
                                          repeats:(BOOL)repeats;
@end
@interface UNNotificationRequest : NSObject
+ (instancetype)requestWithIdentifier:(NSString *)identifier
                              content:(UNNotificationContent *)content
                              trigger:(UNNotificationTrigger *)trigger;
@property(readonly, copy) NSString *identifier;
@property(readonly, copy) UNNotificationContent *content;
@end
@interface UNNotification : NSObject
@property(readonly, copy) UNNotificationRequest *request;
@end
@interface UNNotificationResponse : NSObject
@property(readonly, copy) UNNotification *notification;
@property(readonly, copy) NSString *actionIdentifier;
@end
@interface UNNotificationAction : NSObject
+ (instancetype)actionWithIdentifier:(NSString *)identifier
                               title:(NSString *)title
                             options:(UNNotificationActionOptions)options;
@end
@interface UNNotificationCategory : NSObject
+ (instancetype)categoryWithIdentifier:(NSString *)identifier
                               actions:(NSArray<UNNotificationAction *> *)actions
                     intentIdentifiers:(NSArray<NSString *> *)intentIdentifiers
                               options:(UNNotificationCategoryOptions)options;
@end
@interface UNNotificationSettings : NSObject
@property(readonly) UNAuthorizationStatus authorizationStatus;
@end

@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))handler;
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))handler;
@end
@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter *)currentNotificationCenter;
@property(weak) id<UNUserNotificationCenterDelegate> delegate;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError *error))handler;
- (void)getNotificationSettingsWithCompletionHandler:
    (void (^)(UNNotificationSettings *settings))handler;
- (void)setNotificationCategories:(NSSet<UNNotificationCategory *> *)categories;
- (void)addNotificationRequest:(UNNotificationRequest *)request
         withCompletionHandler:(void (^)(NSError *error))handler;
- (void)removePendingNotificationRequestsWithIdentifiers:(NSArray<NSString *> *)identifiers;
- (void)removeDeliveredNotificationsWithIdentifiers:(NSArray<NSString *> *)identifiers;
@end
