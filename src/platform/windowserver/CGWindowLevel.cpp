#include "windowserver/CGWindowLevel.h"

#include <limits>

std::int32_t CGWindowLevelForKey(CGWindowLevelKey key)
{
    switch (key) {
    case kCGFloatingWindowLevelKey:
        return 3;
    case kCGStatusWindowLevelKey:
        return 25;
    case kCGPopUpMenuWindowLevelKey:
        return 101;
    case kCGScreenSaverWindowLevelKey:
        return 1000;
    case kCGMaximumWindowLevelKey:
        return std::numeric_limits<std::int32_t>::max() - 16;
    }
    return 0;
}

std::int32_t CGShieldingWindowLevel()
{
    return std::numeric_limits<std::int32_t>::max() - 19;
}
