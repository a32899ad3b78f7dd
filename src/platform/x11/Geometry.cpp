#include "x11/Geometry.h"

#include <cmath>

namespace x11 {

int Points::pixels(double points) const
{
    // What the protocol has room for.
    return static_cast<int>(std::lround(std::clamp(points * scale, -32768.0, 32767.0)));
}

CGRect Points::windowSpace(const Rect& rect) const
{
    return { points(rect.x - primary.x), points(rect.y - primary.y), points(rect.width), points(rect.height) };
}

Point Points::fromWindowSpace(CGPoint point) const
{
    return { primary.x + pixels(point.x), primary.y + pixels(point.y) };
}

CGRect Points::screenSpace(const Rect& rect) const
{
    return { points(rect.x - primary.x), points(primary.bottom() - rect.bottom()), points(rect.width),
        points(rect.height) };
}

CGPoint Points::screenSpace(Point pixel) const
{
    return { points(pixel.x - primary.x), points(primary.bottom() - pixel.y - 1) };
}

Rect Points::fromScreenSpace(const CGRect& rect) const
{
    return { primary.x + pixels(rect.x), primary.bottom() - pixels(rect.maxY()), pixels(rect.width),
        pixels(rect.height) };
}

}
