#pragma once

#include "base/CGGeometry.h"

#include <cmath>
#include <optional>

/// A press of the mouse's button on a bar, from going down to coming up. The bar's coordinates.
struct BarPress {
    /// How far the pointer must move sideways, in points, for a press to become a drag.
    static constexpr double dragThreshold = 5.0;

    /// Where the button went down.
    CGPoint start;
    /// The position of the application button that was pressed. Beyond the end when they have become fewer since.
    std::optional<int> button;
    /// The pointer during a drag; absent while nothing is dragged.
    std::optional<double> dragX {};

    bool isDrag() const { return dragX.has_value(); }
    /// The pointer has moved, the button still down.
    void moveTo(double x)
    {
        if (button && (isDrag() || std::abs(x - start.x) > dragThreshold))
            dragX = x;
    }
};
