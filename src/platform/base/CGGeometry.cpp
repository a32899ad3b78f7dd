#include "base/CGGeometry.h"

#include <algorithm>
#include <limits>

CGRect CGRectNull()
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    return { infinity, infinity, 0, 0 };
}

bool CGRectIsNull(const CGRect& rect)
{
    return rect == CGRectNull();
}

CGRect CGRectIntersection(const CGRect& a, const CGRect& b)
{
    const double left = std::max(a.minX(), b.minX());
    const double right = std::min(a.maxX(), b.maxX());
    const double bottom = std::max(a.minY(), b.minY());
    const double top = std::min(a.maxY(), b.maxY());
    if (CGRectIsNull(a) || CGRectIsNull(b) || right < left || top < bottom)
        return CGRectNull();
    return { left, bottom, right - left, top - bottom };
}

bool CGRectIntersectsRect(const CGRect& a, const CGRect& b)
{
    const CGRect common = CGRectIntersection(a, b);
    return common.width > 0 && common.height > 0;
}

CGRect CGRectUnion(const CGRect& a, const CGRect& b)
{
    if (CGRectIsNull(a))
        return b;
    if (CGRectIsNull(b))
        return a;
    const double left = std::min(a.minX(), b.minX());
    const double bottom = std::min(a.minY(), b.minY());
    return { left, bottom, std::max(a.maxX(), b.maxX()) - left, std::max(a.maxY(), b.maxY()) - bottom };
}

CGRect CGRectInset(const CGRect& rect, double dx, double dy)
{
    return { rect.x + dx, rect.y + dy, rect.width - 2 * dx, rect.height - 2 * dy };
}

bool CGRectContainsPoint(const CGRect& rect, CGPoint point)
{
    return rect.minX() <= point.x && point.x < rect.maxX() && rect.minY() <= point.y && point.y < rect.maxY();
}
