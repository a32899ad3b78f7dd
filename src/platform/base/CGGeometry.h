#pragma once

/// Points, sizes and rectangles in points, as 64-bit floats. Which coordinate space a rectangle belongs to is said
/// where it is passed: *window space* has its origin at the top left of the primary screen, y down (window-list bounds,
/// "AXPosition"); *screen space* at its bottom left, y up (`NSScreen` frames, panel frames).

struct CGPoint {
    double x = 0;
    double y = 0;
    bool operator==(const CGPoint&) const = default;
};

struct CGSize {
    double width = 0;
    double height = 0;
    bool operator==(const CGSize&) const = default;
};

struct CGRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    constexpr double minX() const { return x; }
    constexpr double minY() const { return y; }
    constexpr double midX() const { return x + width * 0.5; }
    constexpr double midY() const { return y + height * 0.5; }
    constexpr double maxX() const { return x + width; }
    constexpr double maxY() const { return y + height; }
    constexpr CGPoint origin() const { return { x, y }; }
    constexpr CGSize size() const { return { width, height }; }
    bool operator==(const CGRect&) const = default;
};

/// The null rectangle: what an intersection of rectangles that don't even touch gives.
CGRect CGRectNull();
bool CGRectIsNull(const CGRect& rect);

/// The common part; of area 0 where the two only touch, null where they don't.
CGRect CGRectIntersection(const CGRect& a, const CGRect& b);
/// True where the two share an area greater than 0.
bool CGRectIntersectsRect(const CGRect& a, const CGRect& b);
CGRect CGRectUnion(const CGRect& a, const CGRect& b);
CGRect CGRectInset(const CGRect& rect, double dx, double dy);
/// The edges at the smallest x and y are inside, those at the largest outside.
bool CGRectContainsPoint(const CGRect& rect, CGPoint point);
