#pragma once

#include "settings/Choice.h"

/// The look of the bar's background.
enum class BarStyle { solid, translucent, gradient };
template <>
inline constexpr auto choices<BarStyle> = std::to_array<Choice>({
    { "solid", "Solid" },
    { "translucent", "Translucent" },
    { "gradient", "Gradient" },
});

enum class BarSize { small, medium, large };
template <>
inline constexpr auto choices<BarSize> = std::to_array<Choice>({
    { "small", "Small" },
    { "medium", "Medium" },
    { "large", "Large" },
});

/// What all sizes of the bar are multiplied by.
constexpr double scale(BarSize size)
{
    switch (size) {
    case BarSize::small:
        return 0.82;
    case BarSize::medium:
        return 1.0;
    case BarSize::large:
        return 1.22;
    }
    return 1.0;
}

/// How the application buttons are ordered.
enum class AppOrder { dock, alphabetical, manual };
template <>
inline constexpr auto choices<AppOrder> = std::to_array<Choice>({
    { "dock", "Dock order" },
    { "alphabetical", "Alphabetical" },
    { "manual", "Manual (drag to reorder)" },
});

/// One button per application, or one per window.
enum class WindowGrouping { always, never, automatic };
template <>
inline constexpr auto choices<WindowGrouping> = std::to_array<Choice>({
    { "always", "Always (one per app)" },
    { "never", "Never (one per window)" },
    { "auto", "Automatic" },
});

/// The screen edge that holds the bar.
enum class BarEdge { bottom, top };
template <>
inline constexpr auto choices<BarEdge> = std::to_array<Choice>({
    { "bottom", "Bottom" },
    { "top", "Top" },
});

constexpr bool isTop(BarEdge edge)
{
    return edge == BarEdge::top;
}

/// What a bar shows when there are several screens.
enum class MultiDisplayMode { perScreen, mirrored };
template <>
inline constexpr auto choices<MultiDisplayMode> = std::to_array<Choice>({
    { "perScreen", "Apps on that screen" },
    { "mirrored", "All apps on every screen" },
});

/// The parts of a bar, in their default order from the leading edge.
enum class BarComponent { launcher, search, showDesktop, finder, apps, trash };
template <>
inline constexpr auto choices<BarComponent> = std::to_array<Choice>({
    { "launcher", "Apps launcher" },
    { "search", "Search" },
    { "showDesktop", "Show Desktop" },
    { "finder", "Finder" },
    { "apps", "App buttons" },
    { "trash", "Trash" },
});

/// Whether the component takes the width that the others leave.
constexpr bool isFlexible(BarComponent component)
{
    return component == BarComponent::apps;
}
