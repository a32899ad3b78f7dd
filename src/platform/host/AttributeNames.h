#pragma once

#include "host/Accessibility.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace host {

/// The platform's names of what can be read, written and done, by which programs and logs speak of it.
inline constexpr auto attributeNames = std::to_array<std::pair<Attribute, std::string_view>>({
    { Attribute::windows, "AXWindows" },
    { Attribute::focusedWindow, "AXFocusedWindow" },
    { Attribute::children, "AXChildren" },
    { Attribute::frontmost, "AXFrontmost" },
    { Attribute::manualAccessibility, "AXManualAccessibility" },
    { Attribute::title, "AXTitle" },
    { Attribute::minimized, "AXMinimized" },
    { Attribute::position, "AXPosition" },
    { Attribute::size, "AXSize" },
    { Attribute::fullScreen, "AXFullScreen" },
    { Attribute::main, "AXMain" },
    { Attribute::role, "AXRole" },
    { Attribute::subrole, "AXSubrole" },
    { Attribute::focused, "AXFocused" },
    { Attribute::description, "AXDescription" },
    { Attribute::value, "AXValue" },
    { Attribute::minValue, "AXMinValue" },
    { Attribute::maxValue, "AXMaxValue" },
});
inline constexpr auto actionNames
    = std::to_array<std::pair<Action, std::string_view>>({ { Action::raise, "AXRaise" } });

constexpr std::optional<Attribute> attributeNamed(std::string_view name)
{
    const auto row = std::ranges::find(attributeNames, name, &std::pair<Attribute, std::string_view>::second);
    return row == attributeNames.end() ? std::nullopt : std::optional(row->first);
}

constexpr std::optional<Action> actionNamed(std::string_view name)
{
    const auto row = std::ranges::find(actionNames, name, &std::pair<Action, std::string_view>::second);
    return row == actionNames.end() ? std::nullopt : std::optional(row->first);
}

/// Every attribute has one.
constexpr std::string_view nameOf(Attribute attribute)
{
    return std::ranges::find(attributeNames, attribute, &std::pair<Attribute, std::string_view>::first)->second;
}

constexpr std::string_view nameOf(Action action)
{
    return std::ranges::find(actionNames, action, &std::pair<Action, std::string_view>::first)->second;
}

}
