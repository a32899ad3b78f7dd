#pragma once

#include "x11/Monitors.h"

namespace x11 {

/// What a dock along the top or bottom of a monitor reserves, counted from the root's edges. Absent where another
/// monitor lies between it and the root's edge: a strut would take that monitor as well.
std::optional<Strut> topStrut(const Rect& dock, const Monitors& monitors);
std::optional<Strut> bottomStrut(const Rect& dock, const Monitors& monitors);

/// What a dock's strut takes from each side of a monitor. One that doesn't reach into it, or lies beside it, takes
/// nothing.
Insets takenFrom(const Rect& monitor, const Strut& strut, const Rect& root);

}
