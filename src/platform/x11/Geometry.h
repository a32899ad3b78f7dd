#pragma once

#include "base/CGGeometry.h"

#include <algorithm>

namespace x11 {

/// Pixels of the root window, from its top left corner, y down. One pixel is one point.
struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool operator==(const Rect&) const = default;
};

struct Point {
    int x = 0;
    int y = 0;
    bool operator==(const Point&) const = default;
};

/// The widths of the four sides of a frame, in the order in which properties list them.
struct Insets {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
    bool operator==(const Insets&) const = default;
};

inline Rect grown(const Rect& rect, const Insets& by)
{
    return { rect.x - by.left, rect.y - by.top, rect.width + by.left + by.right, rect.height + by.top + by.bottom };
}

inline Rect shrunk(const Rect& rect, const Insets& by)
{
    return { rect.x + by.left, rect.y + by.top, rect.width - by.left - by.right, rect.height - by.top - by.bottom };
}

inline bool contains(const Rect& outer, const Rect& inner)
{
    return outer.x <= inner.x && outer.y <= inner.y && inner.right() <= outer.right()
        && inner.bottom() <= outer.bottom();
}

inline int overlap(int from, int to, int otherFrom, int otherTo)
{
    return std::max(0, std::min(to, otherTo) - std::max(from, otherFrom));
}

inline long long overlapArea(const Rect& a, const Rect& b)
{
    return static_cast<long long>(overlap(a.x, a.right(), b.x, b.right())) * overlap(a.y, a.bottom(), b.y, b.bottom());
}

/// Window space: pixels of the root, from the top left corner of the primary monitor.
inline CGRect windowSpace(const Rect& rect, Point primary)
{
    return { double(rect.x - primary.x), double(rect.y - primary.y), double(rect.width), double(rect.height) };
}

}
