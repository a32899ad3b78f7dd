#pragma once

#include "appkit/NSColor.h"

/// The looks that depend on the user's choices, as of now. Main thread only.
namespace Appearance {

/// The bar's colour. A stored text that is no colour gives the dark default.
NSColor tint();
/// The colour of what is in front. Follows the system's accent until the user picks one.
NSColor accent();
/// How far a floating bar's body stands in from the bar's bounds; 0 on a bar that doesn't float. Points.
double floatingInset();

}
