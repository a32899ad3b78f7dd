#include "log/Timing.h"

#include "foundation/NSDate.h"
#include "foundation/NSFileHandle.h"
#include "foundation/NSProcessInfo.h"

#include <array>
#include <charconv>
#include <string>

bool Timing::enabled()
{
    static const bool enabled = NSProcessInfo::environment("BAR_TIMING") == "1";
    return enabled;
}

std::uint64_t Timing::now()
{
    return DispatchTime::now().uptimeNanoseconds;
}

void Timing::since(std::uint64_t start, std::string_view label)
{
    if (!enabled())
        return;
    const std::uint64_t end = now();
    const double milliseconds = end > start ? static_cast<double>(end - start) / 1'000'000 : 0.0;

    std::array<char, 32> figure {};
    const auto last = std::to_chars(figure.begin(), figure.end(), milliseconds, std::chars_format::fixed, 1).ptr;
    std::string line = "[time] ";
    line += label;
    line += ' ';
    line.append(figure.begin(), last);
    line += "ms\n";
    NSFileHandle::writeToStandardError(line);
}
