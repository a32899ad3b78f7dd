#include "bar/BarLevel.h"

#include "foundation/NSProcessInfo.h"
#include "log/Log.h"
#include "windowserver/CGWindowLevel.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

std::string lowercased(std::string text)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    std::transform(text.begin(), text.end(), text.begin(), lower);
    return text;
}

std::int32_t levelNamed(std::string_view name)
{
    if (name == "status")
        return CGWindowLevelForKey(kCGStatusWindowLevelKey);
    if (name == "maximum")
        return CGWindowLevelForKey(kCGMaximumWindowLevelKey);
    if (name == "shielding")
        return CGShieldingWindowLevel();
    if (name == "floating")
        return CGWindowLevelForKey(kCGFloatingWindowLevelKey);
    if (name == "screensaver")
        return CGWindowLevelForKey(kCGScreenSaverWindowLevelKey);
    return CGWindowLevelForKey(kCGPopUpMenuWindowLevelKey);
}

}

namespace BarLevel {

std::int32_t resolve()
{
    const std::string name = lowercased(NSProcessInfo::environment("BAR_LEVEL").value_or("popup"));
    const std::int32_t level = levelNamed(name);
    Log::debug("window level: ", name, " -> ", level);
    return level;
}

}
