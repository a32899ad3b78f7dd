#include "bar/FittedText.h"

#include <string_view>
#include <vector>

namespace {

constexpr std::size_t leastCharacters = 2;

/// Where each character ends.
std::vector<std::size_t> characterEnds(std::string_view text)
{
    std::vector<std::size_t> ends;
    for (std::size_t index = 1; index <= text.size(); ++index)
        if (index == text.size() || (static_cast<unsigned char>(text[index]) & 0xC0) != 0x80)
            ends.push_back(index);
    return ends;
}

}

std::string FittedText::shortened(const std::string& text, const NSFont& font, double width)
{
    const auto ends = characterEnds(text);
    const auto beginning = [&](std::size_t count) { return text.substr(0, ends[count - 1]) + "…"; };
    const auto fits = [&](const std::string& candidate) { return sizeWithAttributes(candidate, font).width <= width; };

    // A text whose beginning is too wide is so itself; one that can be wider by its end alone is measured whole.
    std::size_t tooMany = leastCharacters;
    while (tooMany < ends.size() && fits(beginning(tooMany)))
        tooMany *= 2;
    if (tooMany >= ends.size()) {
        if (fits(text))
            return text;
        tooMany = ends.size();
    }
    if (tooMany <= leastCharacters)
        return ends.size() <= leastCharacters ? text + "…" : beginning(leastCharacters);

    std::size_t fitting = leastCharacters;
    while (tooMany - fitting > 1) {
        const std::size_t middle = (fitting + tooMany) / 2;
        (fits(beginning(middle)) ? fitting : tooMany) = middle;
    }
    return beginning(fitting);
}
