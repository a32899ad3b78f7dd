#pragma once

#include "base/CGGeometry.h"

class QRect;

/// Points, which the program counts in, as the toolkit's pixels. Widgets are sized and painted in pixels, so that what
/// is drawn is as sharp as the display at any scale, and follows a scale that changes. For the layer's own use.
namespace Pixels {

/// Pixels to a point.
double scale();
/// A length, to the nearest pixel.
int from(double points);
/// A rectangle, y down, each edge at the nearest pixel.
QRect from(const CGRect& rect);

}
