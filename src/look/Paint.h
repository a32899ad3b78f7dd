#pragma once

#include "appkit/NSBezierPath.h"

/// The strokes that every picture of this program is made of, drawn into the current context.
namespace Paint {

inline NSBezierPath rounded(const CGRect& rect, double radius)
{
    return NSBezierPath::roundedRect(rect, radius, radius);
}

inline void fill(const NSBezierPath& path, const NSColor& color)
{
    color.set();
    path.fill();
}

inline void stroke(NSBezierPath path, const NSColor& color, double lineWidth)
{
    path.setLineWidth(lineWidth);
    color.set();
    path.stroke();
}

}
