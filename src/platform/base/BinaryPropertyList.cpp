#include "base/BinaryPropertyList.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>

namespace {

/// Of at most 8 bytes; absent beyond the end.
std::optional<std::uint64_t> numberAt(std::string_view bytes, std::uint64_t place, std::uint64_t size)
{
    if (size > sizeof(std::uint64_t) || place > bytes.size() || size > bytes.size() - place)
        return std::nullopt;
    std::uint64_t number = 0;
    for (const char byte : bytes.substr(place, size))
        number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

struct Text {
    std::string_view bytes;
    /// Bytes of a character: 1 of ASCII, 2 of UTF-16.
    std::size_t unit = 1;
};

/// The object at that place; empty if it is no text.
Text textAt(std::string_view bytes, std::uint64_t place)
{
    constexpr std::uint64_t narrowText = 0x5;
    constexpr std::uint64_t wideText = 0x6;
    constexpr std::uint64_t countFollows = 0xF;
    const std::uint64_t marker = numberAt(bytes, place, 1).value_or(0);
    const std::uint64_t kind = marker >> 4;
    if (kind != narrowText && kind != wideText)
        return {};
    const std::size_t unit = kind == wideText ? 2 : 1;
    std::uint64_t first = place + 1;
    std::uint64_t count = marker & 0xF;
    if (count == countFollows) {
        // A number, whose size is a power of two.
        const std::uint64_t size = std::uint64_t { 1 } << (numberAt(bytes, first, 1).value_or(0) & 0x3);
        count = numberAt(bytes, first + 1, size).value_or(0);
        first += 1 + size;
    }
    if (first > bytes.size() || count > (bytes.size() - first) / unit)
        return {};
    return { bytes.substr(first, count * unit), unit };
}

bool hasZero(const Text& text)
{
    for (std::size_t place = 0; place < text.bytes.size(); place += text.unit) {
        if (std::ranges::all_of(text.bytes.substr(place, text.unit), [](char byte) { return byte == 0; }))
            return true;
    }
    return false;
}

}

bool BinaryPropertyList::hasTextWithZero(std::string_view bytes)
{
    // 6 bytes, the sizes of a place and of a reference, and in 8 bytes each the number of objects, the first one, and
    // where the places are.
    constexpr std::uint64_t endSize = 32;
    if (bytes.size() < endSize)
        return false;
    const std::uint64_t end = bytes.size() - endSize;
    const auto placeSize = *numberAt(bytes, end + 6, 1);
    const auto count = std::min<std::uint64_t>(*numberAt(bytes, end + 8, 8), bytes.size());
    const auto places = *numberAt(bytes, end + 24, 8);
    std::size_t length = 0;
    for (std::uint64_t object = 0; object < count; ++object) {
        const auto place = numberAt(bytes, places + object * placeSize, placeSize);
        const Text text = place ? textAt(bytes, *place) : Text {};
        length += text.bytes.size();
        if (hasZero(text) || length > bytes.size())
            return true;
    }
    return false;
}

bool BinaryPropertyList::isWithinCalendar(std::string_view bytes)
{
    constexpr std::uint64_t objects = 8;
    constexpr std::uint64_t dateMarker = 0x33;
    // Seconds since 2001.
    constexpr double first = -63114076800;
    constexpr double last = 252423993600;
    if (numberAt(bytes, objects, 1) != dateMarker)
        return true;
    const auto seconds = std::bit_cast<double>(numberAt(bytes, objects + 1, sizeof(double)).value_or(0));
    return seconds >= first && seconds < last;
}
