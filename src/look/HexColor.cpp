#include "look/HexColor.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <system_error>

namespace HexColor {

std::optional<NSColor> parse(std::string_view text)
{
    constexpr std::string_view surroundings = "# ";
    constexpr std::size_t digitCount = 6;

    const std::size_t first = text.find_first_not_of(surroundings);
    if (first == std::string_view::npos)
        return std::nullopt;
    const std::string_view digits = text.substr(first, text.find_last_not_of(surroundings) - first + 1);
    if (digits.size() != digitCount)
        return std::nullopt;

    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [parsedTo, error] = std::from_chars(digits.data(), end, number, 16);
    if (error != std::errc() || parsedTo != end)
        return std::nullopt;

    const auto component = [number](int shift) { return ((number >> shift) & 0xFF) / 255.0; };
    return NSColor::colorWithSRGBRed(component(16), component(8), component(0), 1.0);
}

std::string hexString(const NSColor& color)
{
    const auto byte = [](double component) { return static_cast<unsigned>(std::lround(component * 255)) & 0xFF; };
    char text[sizeof "RRGGBB"];
    std::snprintf(text, sizeof text, "%02X%02X%02X", byte(color.redComponent()), byte(color.greenComponent()),
        byte(color.blueComponent()));
    return text;
}

}
