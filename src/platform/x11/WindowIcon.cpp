#include "x11/WindowIcon.h"

namespace x11 {

std::vector<IconSource::Pixels> iconPixels(std::span<const std::uint32_t> numbers)
{
    constexpr std::uint32_t largest = 512;
    std::vector<IconSource::Pixels> pictures;
    while (numbers.size() > 2) {
        const std::uint32_t width = numbers[0];
        const std::uint32_t height = numbers[1];
        const std::uint64_t count = std::uint64_t(width) * height;
        numbers = numbers.subspan(2);
        if (count == 0 || count > numbers.size())
            break;
        if (width <= largest && height <= largest)
            pictures.push_back({ int(width), int(height), { numbers.begin(), numbers.begin() + long(count) } });
        numbers = numbers.subspan(count);
    }
    return pictures;
}

}
