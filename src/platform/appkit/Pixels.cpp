#include "appkit/Pixels.h"

#include "host/Desktop.h"
#include "host/Surfaces.h"

#include <QRect>

#include <cmath>

double Pixels::scale()
{
    return host::Desktop::hasCurrent() ? host::Desktop::current().surfaces().scale() : 1;
}

int Pixels::from(double points)
{
    return static_cast<int>(std::lround(points * scale()));
}

QRect Pixels::from(const CGRect& rect)
{
    return { QPoint(from(rect.x), from(rect.y)), QPoint(from(rect.maxX()) - 1, from(rect.maxY()) - 1) };
}
