#include "foundation/NSISO8601DateFormatter.h"

#include <array>
#include <ctime>

std::string NSISO8601DateFormatter::stringFromDate(NSDate date)
{
    const auto seconds = static_cast<std::time_t>(date.timeIntervalSince1970());
    std::tm parts {};
    ::gmtime_r(&seconds, &parts);
    std::array<char, 32> text {};
    return { text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts) };
}
