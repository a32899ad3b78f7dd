#pragma once

#include "base/CGGeometry.h"

#include <algorithm>

namespace x11 {

/// Pixels of the root window, from its top left corner, y down.
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

/// How points lie on the root's pixels. Nowhere else is one made of the other.
struct Points {
    /// Pixels to a point.
    double scale = 1;
    /// The primary monitor: window space begins at its top left corner, screen space at its bottom left one.
    Rect primary;

    /// A length, to the nearest pixel.
    int pixels(double points) const;
    double points(int pixels) const { return pixels / scale; }

    CGRect windowSpace(const Rect& rect) const;
    /// The pixel at a point of window space.
    Point fromWindowSpace(CGPoint point) const;

    CGRect screenSpace(const Rect& rect) const;
    /// Of a pixel: its lower left corner.
    CGPoint screenSpace(Point pixel) const;
    /// A rectangle of screen space. One that is moved by whole pixels keeps its size in pixels.
    Rect fromScreenSpace(const CGRect& rect) const;

    bool operator==(const Points&) const = default;
};

}
