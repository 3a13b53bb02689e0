#include "platform/macos/MacLoginItem.h"

#include "base/French.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>

namespace vorle {

MacLoginItem::MacLoginItem() {
    const std::shared_ptr<bool> opened = m_opened;
    id observer = [[NSNotificationCenter defaultCenter]
        addObserverForName:NSApplicationDidFinishLaunchingNotification
                    object:nil
                     queue:nil
                usingBlock:^(NSNotification *) {
                  NSAppleEventDescriptor *event =
                      [[NSAppleEventManager sharedAppleEventManager] currentAppleEvent];
                  *opened = event.eventID == kAEOpenApplication &&
                            [event paramDescriptorForKeyword:keyAEPropData].enumCodeValue ==
                                keyAELaunchedAsLogInItem;
                }];
    m_observer = CFBridgingRetain(observer);
}

MacLoginItem::~MacLoginItem() {
    id observer = CFBridgingRelease(m_observer);
    [[NSNotificationCenter defaultCenter] removeObserver:observer];
}

namespace {

LoginItem::State stateNow() {
    using State = LoginItem::State;
    switch ([SMAppService mainAppService].status) {
    case SMAppServiceStatusEnabled:
        return State::On;
    case SMAppServiceStatusRequiresApproval:
        return State::Held;
    case SMAppServiceStatusNotFound:
        // A bundle that was never registered is told so too: it can be, where there is one.
        return [NSBundle mainBundle].bundleIdentifier == nil ? State::Absent : State::Off;
    default:
        return State::Off;
    }
}

std::optional<QString> put(bool on) {
    SMAppService *service = [SMAppService mainAppService];
    const SMAppServiceStatus status = service.status;
    const bool registered =
        status == SMAppServiceStatusEnabled || status == SMAppServiceStatusRequiresApproval;
    if (registered == on) {
        return std::nullopt;
    }
    NSError *error = nil;
    const BOOL done =
        on ? [service registerAndReturnError:&error] : [service unregisterAndReturnError:&error];
    if (done) {
        return std::nullopt;
    }
    return QString::fromUtf8([error.localizedDescription UTF8String]);
}

} // namespace

Task<LoginItem::State> MacLoginItem::state() { co_return stateNow(); }

QString MacLoginItem::remedy(State state) const {
    switch (state) {
    case State::Held:
        return French::tr("macOS attend ton accord : Réglages Système, Général, Ouverture.");
    case State::Absent:
        return French::tr("Seule l’app installée dans Applications peut s’ouvrir ainsi.");
    default:
        return {};
    }
}

Task<std::optional<QString>> MacLoginItem::set(bool on) { co_return put(on); }

} // namespace vorle
