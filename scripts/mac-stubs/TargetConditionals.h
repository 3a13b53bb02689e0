#pragma once

// Just enough of a Mac for scripts/check-mac, written here: what the adapters use, as Apple
// documents it, and nothing else. A Mac's compiler never reads these files.

#define TARGET_OS_MAC 1
#define TARGET_OS_OSX 1
#define TARGET_OS_IPHONE 0
#define TARGET_OS_IOS 0
#define TARGET_OS_WATCH 0
#define TARGET_OS_TV 0
#define TARGET_OS_SIMULATOR 0
#define TARGET_OS_EMBEDDED 0
#define TARGET_OS_MACCATALYST 0
