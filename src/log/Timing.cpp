#include "log/Timing.h"

#include "foundation/NSDate.h"
#include "foundation/NSFileHandle.h"
#include "foundation/NSProcessInfo.h"

#include <array>
#include <cstdio>
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
    std::snprintf(figure.data(), figure.size(), " %.1fms\n", milliseconds);
    std::string line = "[time] ";
    line += label;
    line += figure.data();
    NSFileHandle::writeToStandardError(line);
}
