#include "x11/MonitorIdentity.h"

#include <algorithm>
#include <cstdio>

namespace x11 {
namespace {

std::uint64_t hash(std::string_view text, std::uint64_t seed)
{
    // FNV-1a.
    for (const char c : text) {
        seed ^= static_cast<unsigned char>(c);
        seed *= 0x100000001b3;
    }
    return seed;
}

}

std::string monitorUuid(const Monitor& monitor)
{
    const std::string identity = monitor.name + '\0' + monitor.edid;
    const std::uint64_t high = hash(identity, 0xcbf29ce484222325);
    const std::uint64_t low = hash(identity, high);
    char text[37];
    // Version 8 is the one whose bits mean what its maker wants.
    std::snprintf(text, sizeof text, "%08X-%04X-8%03X-%04X-%012llX", static_cast<unsigned>(high >> 32),
        static_cast<unsigned>(high >> 16 & 0xFFFF), static_cast<unsigned>(high & 0xFFF),
        static_cast<unsigned>(0x8000 | (low >> 48 & 0x3FFF)), static_cast<unsigned long long>(low & 0xFFFFFFFFFFFF));
    return text;
}

std::vector<std::uint32_t> monitorNumbers(const std::vector<Monitor>& monitors)
{
    std::vector<std::uint32_t> numbers;
    for (const Monitor& monitor : monitors) {
        auto number = static_cast<std::uint32_t>(hash(monitor.name, 0xcbf29ce484222325));
        while (number == 0 || std::ranges::find(numbers, number) != numbers.end())
            ++number;
        numbers.push_back(number);
    }
    return numbers;
}

}
