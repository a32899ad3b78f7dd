#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

/// How one case of a choice is stored, and what a person reads for it.
struct Choice {
    std::string_view rawValue;
    std::string_view title;
};

/// The cases of a choice, by an enumeration without gaps: one row a case, in their order. Each choice specialises it.
template <class Enum>
inline constexpr std::array<Choice, 0> choices {};

template <class Enum>
concept ChoiceEnum = !choices<Enum>.empty();

template <ChoiceEnum Enum>
constexpr auto allCases()
{
    std::array<Enum, choices<Enum>.size()> cases {};
    for (std::size_t index = 0; index < cases.size(); ++index)
        cases[index] = static_cast<Enum>(index);
    return cases;
}

template <ChoiceEnum Enum>
constexpr std::string_view rawValue(Enum value)
{
    return choices<Enum>[static_cast<std::size_t>(value)].rawValue;
}

template <ChoiceEnum Enum>
constexpr std::string_view title(Enum value)
{
    return choices<Enum>[static_cast<std::size_t>(value)].title;
}

template <ChoiceEnum Enum>
constexpr std::optional<Enum> fromRawValue(std::string_view text)
{
    const auto& rows = choices<Enum>;
    const auto row = std::ranges::find(rows, text, &Choice::rawValue);
    if (row == rows.end())
        return std::nullopt;
    return static_cast<Enum>(row - rows.begin());
}
