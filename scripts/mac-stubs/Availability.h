#pragma once

#include "AvailabilityMacros.h"

#define API_SINCE(version) __attribute__((availability(macos, introduced = version)))
#define API_UNTIL(version, end)                                                                    \
    __attribute__((availability(macos, introduced = version, deprecated = end)))
