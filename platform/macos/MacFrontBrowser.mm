#include "platform/macos/MacFrontBrowser.h"

#import <AppKit/AppKit.h>

namespace vorle {

namespace {

std::optional<QString> run(const QString &script) {
    NSAppleScript *source = [[NSAppleScript alloc] initWithSource:script.toNSString()];
    NSDictionary *failure = nil;
    NSAppleEventDescriptor *given = [source executeAndReturnError:&failure];
    NSString *text = [given stringValue];
    return text == nil ? std::nullopt : std::optional(QString::fromNSString(text));
}

} // namespace

QString MacFrontBrowser::frontApp() const {
    NSRunningApplication *front = [[NSWorkspace sharedWorkspace] frontmostApplication];
    return QString::fromNSString([front bundleIdentifier]); // null for none
}

// Scripts run on the main thread alone; the panel that asks is drawn before it is held up.
Task<std::optional<QString>> MacFrontBrowser::answer(QString script) {
    co_await sleepFor(std::chrono::milliseconds(0));
    co_return run(script);
}

} // namespace vorle
