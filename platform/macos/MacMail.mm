#include "platform/macos/MacMail.h"

#import <AppKit/AppKit.h>

namespace vorle {

namespace {

NSURL *fileUrl(const QString &path) { return [NSURL fileURLWithPath:path.toNSString()]; }

} // namespace

Task<QString> MacMail::program() {
    NSURL *anybody = [NSURL URLWithString:@"mailto:quelqu.un@example.org"];
    NSURL *application = [[NSWorkspace sharedWorkspace] URLForApplicationToOpenURL:anybody];
    NSBundle *bundle = application == nil ? nil : [NSBundle bundleWithURL:application];
    co_return bundle == nil ? QString() : QString::fromNSString(bundle.bundleIdentifier);
}

bool MacMail::takesDrafts(const QString &program) const { return program == u"com.apple.mail"; }

Task<bool> MacMail::compose(MailDraft draft) {
    NSSharingService *service =
        [NSSharingService sharingServiceNamed:NSSharingServiceNameComposeEmail];
    NSMutableArray *items = [NSMutableArray array];
    [items addObject:draft.body.toNSString()];
    for (const QString &path : draft.attachments) {
        [items addObject:fileUrl(path)];
    }
    if (service == nil || ![service canPerformWithItems:items]) {
        co_return false;
    }
    service.recipients = @[ draft.to.toNSString() ];
    service.subject = draft.subject.toNSString();
    [service performWithItems:items];
    co_return true;
}

bool MacMail::open(const QUrl &address) {
    NSString *text = QString::fromLatin1(address.toEncoded()).toNSString();
    return [[NSWorkspace sharedWorkspace] openURL:[NSURL URLWithString:text]];
}

void MacMail::show(const QStringList &files) {
    NSMutableArray<NSURL *> *urls = [NSMutableArray array];
    for (const QString &path : files) {
        [urls addObject:fileUrl(path)];
    }
    [[NSWorkspace sharedWorkspace] activateFileViewerSelectingURLs:urls];
}

QString bundleVersion() {
    NSDictionary<NSString *, id> *information = [NSBundle mainBundle].infoDictionary;
    const auto text = [information](NSString *key) {
        id value = information[key];
        return [value isKindOfClass:[NSString class]] ? QString::fromNSString((NSString *)value)
                                                      : QString();
    };
    const QString version = text(@"CFBundleShortVersionString");
    const QString build = text(@"CFBundleVersion");
    return version.isEmpty() || build.isEmpty()
               ? version
               : version + QStringLiteral(" (") + build + QStringLiteral(")");
}

} // namespace vorle
