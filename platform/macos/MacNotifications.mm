#include "platform/macos/MacNotifications.h"

#include "base/French.h"

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

#include <optional>
#include <utility>

namespace {

NSString *text(const QString &words) {
    NSString *made = [NSString stringWithUTF8String:words.toUtf8().constData()];
    return made ? made : @"";
}

QString words(NSString *text) { return text ? QString::fromUtf8([text UTF8String]) : QString(); }

NSString *const sectionKey = @"section";

} // namespace

/// Answers the centre, which may call it on any thread.
@interface VorleNotificationDelegate : NSObject <UNUserNotificationCenterDelegate>
@property(copy) void (^tapped)(NSString *identifier, NSString *section, NSString *action);
@end

@implementation VorleNotificationDelegate
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))handler {
    (void)center;
    (void)notification;
    // The app may be active with nothing of it in sight: its window can be closed.
    handler(static_cast<UNNotificationPresentationOptions>(UNNotificationPresentationOptionBanner |
                                                           UNNotificationPresentationOptionList |
                                                           UNNotificationPresentationOptionSound));
}
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))handler {
    (void)center;
    NSString *action = response.actionIdentifier;
    if (![action isEqualToString:UNNotificationDismissActionIdentifier]) {
        UNNotificationRequest *request = response.notification.request;
        NSString *identifier = request.identifier;
        id section = request.content.userInfo[sectionKey];
        NSString *named = [section isKindOfClass:[NSString class]] ? section : @"";
        NSString *chosen =
            [action isEqualToString:UNNotificationDefaultActionIdentifier] ? @"" : action;
        dispatch_async(dispatch_get_main_queue(), ^{
          if (self.tapped) {
              self.tapped(identifier, named, chosen);
          }
        });
    }
    handler();
}
@end

namespace vorle {

struct MacNotifications::State {
    UNUserNotificationCenter *center = nil; ///< none outside of a bundle
    VorleNotificationDelegate *delegate = nil;
    Standing standing = Standing::Unknown;
    Events events;
    bool followed = false;                ///< by anybody, so far
    std::optional<NotificationTap> early; ///< came before that

    void tell(const NotificationTap &tap) {
        if (events.tapped) {
            events.tapped(tap);
        } else if (!followed) {
            early = tap;
        }
    }
    void become(Standing now) {
        standing = now;
        if (events.known) {
            events.known();
        }
    }
};

namespace {

using State = MacNotifications::State;

Notifications::Standing standingOf(UNAuthorizationStatus status) {
    switch (status) {
    case UNAuthorizationStatusNotDetermined:
        return Notifications::Standing::Unasked;
    case UNAuthorizationStatusDenied:
        return Notifications::Standing::Refused;
    default:
        return Notifications::Standing::Granted;
    }
}

/// Asks, and tells on the main thread; nothing once the object is gone.
void ask(const std::shared_ptr<State> &state) {
    const std::weak_ptr<State> weak = state;
    [state->center
        getNotificationSettingsWithCompletionHandler:^(UNNotificationSettings *settings) {
          const UNAuthorizationStatus status = settings.authorizationStatus;
          dispatch_async(dispatch_get_main_queue(), ^{
            if (const auto here = weak.lock()) {
                here->become(standingOf(status));
            }
          });
        }];
}

UNMutableNotificationContent *contentOf(const Notification &notification) {
    UNMutableNotificationContent *content = [[UNMutableNotificationContent alloc] init];
    content.title = text(notification.title);
    content.body = text(notification.body);
    content.categoryIdentifier = text(notification.category);
    content.userInfo = @{sectionKey : text(notification.section)};
    if (notification.sound == Notification::Sound::Default) {
        content.sound = [UNNotificationSound defaultSound];
    }
    if (!notification.picture.isEmpty()) {
        NSError *error = nil;
        UNNotificationAttachment *attachment = [UNNotificationAttachment
            attachmentWithIdentifier:@"score"
                                 URL:[NSURL fileURLWithPath:text(notification.picture)]
                             options:nil
                               error:&error];
        if (attachment) {
            [content setAttachments:@[ attachment ]];
        }
    }
    return content;
}

void add(const std::shared_ptr<State> &state, const Notification &notification,
         UNNotificationTrigger *trigger) {
    UNNotificationRequest *request =
        [UNNotificationRequest requestWithIdentifier:text(notification.identifier)
                                             content:contentOf(notification)
                                             trigger:trigger];
    const std::weak_ptr<State> weak = state;
    const QString identifier = notification.identifier;
    [state->center addNotificationRequest:request
                    withCompletionHandler:^(NSError *error) {
                      if (!error) {
                          return;
                      }
                      const QString why = words(error.localizedDescription);
                      dispatch_async(dispatch_get_main_queue(), ^{
                        if (const auto here = weak.lock(); here && here->events.failed) {
                            here->events.failed(identifier, why);
                        }
                      });
                    }];
}

} // namespace

MacNotifications::MacNotifications() : m_state(std::make_shared<State>()) {
    // Asked for outside of a bundle, the centre would end the program.
    if ([NSBundle mainBundle].bundleIdentifier == nil) {
        m_state->standing = Standing::Absent;
        return;
    }
    m_state->center = [UNUserNotificationCenter currentNotificationCenter];
    m_state->delegate = [[VorleNotificationDelegate alloc] init];
    const std::weak_ptr<State> weak = m_state;
    m_state->delegate.tapped = ^(NSString *identifier, NSString *section, NSString *action) {
      if (const auto here = weak.lock()) {
          here->tell({words(identifier), words(section), words(action)});
      }
    };
    m_state->center.delegate = m_state->delegate;
}

MacNotifications::~MacNotifications() = default;

void MacNotifications::follow(Events events) {
    m_state->events = std::move(events);
    m_state->followed = true;
    if (!m_state->early) {
        return;
    }
    const std::weak_ptr<State> weak = m_state;
    dispatch_async(dispatch_get_main_queue(), ^{
      if (const auto here = weak.lock(); here && here->early) {
          here->tell(*std::exchange(here->early, std::nullopt));
      }
    });
}

void MacNotifications::registerCategories(const QList<NotificationCategory> &categories) {
    NSMutableArray<UNNotificationCategory *> *all = [[NSMutableArray alloc] init];
    for (const NotificationCategory &category : categories) {
        NSMutableArray<UNNotificationAction *> *actions = [[NSMutableArray alloc] init];
        for (const NotificationAction &action : category.actions) {
            [actions addObject:[UNNotificationAction
                                   actionWithIdentifier:text(action.identifier)
                                                  title:text(action.label)
                                                options:UNNotificationActionOptionForeground]];
        }
        [all addObject:[UNNotificationCategory
                           categoryWithIdentifier:text(category.identifier)
                                          actions:actions
                                intentIdentifiers:@[]
                                          options:UNNotificationCategoryOptionNone]];
    }
    [m_state->center setNotificationCategories:[NSSet setWithArray:all]];
}

Notifications::Standing MacNotifications::standing() const { return m_state->standing; }

void MacNotifications::look() {
    if (m_state->center == nil) {
        m_state->become(Standing::Absent);
        return;
    }
    ask(m_state);
}

void MacNotifications::authorise() {
    if (m_state->center == nil) {
        m_state->become(Standing::Absent);
        return;
    }
    const std::weak_ptr<State> weak = m_state;
    [m_state->center
        requestAuthorizationWithOptions:static_cast<UNAuthorizationOptions>(
                                            UNAuthorizationOptionAlert | UNAuthorizationOptionSound)
                      completionHandler:^(BOOL granted, NSError *error) {
                        (void)granted; // the settings say it, of a person asked earlier too
                        (void)error;
                        dispatch_async(dispatch_get_main_queue(), ^{
                          if (const auto here = weak.lock()) {
                              ask(here);
                          }
                        });
                      }];
}

QString MacNotifications::remedy() const {
    switch (m_state->standing) {
    case Standing::Refused:
        return French::tr("macOS ne me laisse pas en envoyer. Pour changer ça : Réglages "
                          "Système, Notifications, vorle.");
    case Standing::Absent:
        return French::tr("Il n’y en a que pour l’app installée dans Applications.");
    default:
        return {};
    }
}

void MacNotifications::post(const Notification &notification) {
    if (m_state->center != nil) {
        add(m_state, notification, nil);
    }
}

void MacNotifications::schedule(const Notification &notification, const WeeklyMoment &moment) {
    if (m_state->center == nil) {
        return;
    }
    NSDateComponents *components = [[NSDateComponents alloc] init];
    components.weekday = moment.weekday;
    components.hour = moment.hour;
    components.minute = moment.minute;
    add(m_state, notification,
        [UNCalendarNotificationTrigger triggerWithDateMatchingComponents:components repeats:YES]);
}

void MacNotifications::withdrawScheduled(const QString &identifier) {
    [m_state->center removePendingNotificationRequestsWithIdentifiers:@[ text(identifier) ]];
}

} // namespace vorle
