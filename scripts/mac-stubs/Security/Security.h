#pragma once

#include "../CoreFoundation/CoreFoundation.h"

typedef struct __SecCode *SecCodeRef;
typedef const struct __SecCode *SecStaticCodeRef;
typedef struct __SecRequirement *SecRequirementRef;
typedef UInt32 SecCSFlags;

enum : SecCSFlags {
    kSecCSDefaultFlags = 0,
    kSecCSSigningInformation = 1 << 1,
    kSecCSCheckAllArchitectures = 1 << 0,
    kSecCSStrictValidate = 1 << 4,
};

enum : OSStatus { errSecSuccess = 0 };

extern "C" {
extern const CFStringRef kSecCodeInfoTeamIdentifier;
OSStatus SecCodeCopySelf(SecCSFlags flags, SecCodeRef *self);
OSStatus SecCodeCopySigningInformation(SecStaticCodeRef code, SecCSFlags flags,
                                       CFDictionaryRef *information);
OSStatus SecStaticCodeCreateWithPath(CFURLRef path, SecCSFlags flags, SecStaticCodeRef *code);
OSStatus SecRequirementCreateWithString(CFStringRef text, SecCSFlags flags,
                                        SecRequirementRef *requirement);
OSStatus SecStaticCodeCheckValidity(SecStaticCodeRef code, SecCSFlags flags,
                                    SecRequirementRef requirement);
}
