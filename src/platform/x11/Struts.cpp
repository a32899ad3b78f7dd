#include "x11/Struts.h"

#include <algorithm>

namespace x11 {
namespace {

enum Side : std::size_t { leftSide, rightSide, topSide, bottomSide };

/// Where the range of a side stands in a strut.
constexpr std::size_t startOf(Side side)
{
    return 4 + 2 * side;
}

std::optional<Strut> strutOver(const Rect& reserved, Side side, const Rect& dock, const Monitors& monitors)
{
    const bool holdsMonitor = std::ranges::any_of(monitors.monitors(), [&](const Monitor& monitor) {
        return overlapArea(monitor.frame, reserved) > 0 && overlapArea(monitor.frame, dock) == 0;
    });
    if (holdsMonitor || reserved.height <= 0)
        return std::nullopt;
    Strut strut {};
    strut[side] = static_cast<std::uint32_t>(reserved.height);
    strut[startOf(side)] = static_cast<std::uint32_t>(std::max(0, dock.x));
    strut[startOf(side) + 1] = static_cast<std::uint32_t>(std::max(0, dock.right() - 1));
    return strut;
}

}

std::optional<Strut> topStrut(const Rect& dock, const Monitors& monitors)
{
    return strutOver({ dock.x, 0, dock.width, dock.bottom() }, topSide, dock, monitors);
}

std::optional<Strut> bottomStrut(const Rect& dock, const Monitors& monitors)
{
    return strutOver(
        { dock.x, dock.y, dock.width, monitors.rootFrame().bottom() - dock.y }, bottomSide, dock, monitors);
}

Insets takenFrom(const Rect& monitor, const Strut& strut, const Rect& root)
{
    const auto reach = [&](Side side, int gap, int length) {
        const auto depth = static_cast<std::int64_t>(strut[side]) - gap;
        return depth < length ? static_cast<int>(std::max<std::int64_t>(0, depth)) : 0;
    };
    const auto lies = [&](Side side, int from, int to) {
        return static_cast<std::int64_t>(strut[startOf(side)]) < to
            && from <= static_cast<std::int64_t>(strut[startOf(side) + 1]);
    };
    Insets insets;
    if (lies(leftSide, monitor.y, monitor.bottom()))
        insets.left = reach(leftSide, monitor.x, monitor.width);
    if (lies(rightSide, monitor.y, monitor.bottom()))
        insets.right = reach(rightSide, root.right() - monitor.right(), monitor.width);
    if (lies(topSide, monitor.x, monitor.right()))
        insets.top = reach(topSide, monitor.y, monitor.height);
    if (lies(bottomSide, monitor.x, monitor.right()))
        insets.bottom = reach(bottomSide, root.bottom() - monitor.bottom(), monitor.height);
    return insets;
}

}
