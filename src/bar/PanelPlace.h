#pragma once

#include "base/CGGeometry.h"

/// Where the small panels that belong to a button open: in the middle of it and beyond the bar's inner edge. Screen
/// space. Main thread.
namespace PanelPlace {

/// `gap` is the room between the button and the panel, `margin` the least between the panel and the sides of the screen
/// that the button is on.
CGRect beside(const CGRect& button, CGSize panel, double gap, double margin);
/// The width that a panel of that button can have.
double room(const CGRect& button, double margin);

}
