#pragma once

#include "../Availability.h"

typedef const void *CFTypeRef;
typedef const struct __CFString *CFStringRef;
typedef const struct __CFURL *CFURLRef;
typedef const struct __CFData *CFDataRef;
typedef const struct __CFDictionary *CFDictionaryRef;
typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef unsigned short UInt16;
typedef unsigned int UInt32;
typedef int SInt32;
typedef SInt32 OSStatus;
typedef UInt32 OSType;
typedef UInt32 FourCharCode;
typedef unsigned long ByteCount;
typedef unsigned long ItemCount;

extern "C" {
void CFRelease(CFTypeRef object);
CFTypeRef CFRetain(CFTypeRef object);
}

enum { noErr = 0 };
