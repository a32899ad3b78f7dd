#pragma once

#include <cstdint>

enum CGWindowLevelKey : std::int32_t {
    kCGFloatingWindowLevelKey = 5,
    kCGStatusWindowLevelKey = 9,
    kCGPopUpMenuWindowLevelKey = 11,
    kCGScreenSaverWindowLevelKey = 13,
    kCGMaximumWindowLevelKey = 14,
};

/// The window level of a key; 0 for an unknown one.
std::int32_t CGWindowLevelForKey(CGWindowLevelKey key);
std::int32_t CGShieldingWindowLevel();
