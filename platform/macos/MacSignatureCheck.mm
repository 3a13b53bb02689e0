#include "platform/macos/MacSignatureCheck.h"

#import <Foundation/Foundation.h>
#import <Security/Security.h>

namespace vorle {

bool MacSignatureCheck::meets(const QString &program, const QString &requirement) const {
    @autoreleasepool { // on a thread of the pool, which has none
        NSURL *place = [NSURL fileURLWithPath:program.toNSString()];
        SecStaticCodeRef code = nullptr;
        SecRequirementRef demanded = nullptr;
        // Of a program for several processors each part counts: any of them may be what runs.
        const SecCSFlags strictly = kSecCSCheckAllArchitectures | kSecCSStrictValidate;
        const bool valid =
            place != nil &&
            SecStaticCodeCreateWithPath((__bridge CFURLRef)place, kSecCSDefaultFlags, &code) ==
                errSecSuccess &&
            SecRequirementCreateWithString((__bridge CFStringRef)requirement.toNSString(),
                                           kSecCSDefaultFlags, &demanded) == errSecSuccess &&
            SecStaticCodeCheckValidity(code, strictly, demanded) == errSecSuccess;
        for (CFTypeRef object : {static_cast<CFTypeRef>(demanded), static_cast<CFTypeRef>(code)}) {
            if (object != nullptr) {
                CFRelease(object);
            }
        }
        return valid;
    }
}

} // namespace vorle
