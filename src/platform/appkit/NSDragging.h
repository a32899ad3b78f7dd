#pragma once

#include "base/CGGeometry.h"
#include "foundation/NSURL.h"

#include <vector>

enum class NSDragOperation : unsigned { none = 0, move = 16 };

/// What is being dragged over a view.
struct NSDraggingInfo {
    /// In the window's coordinates: origin at its lower left corner, y up.
    CGPoint draggingLocation;
    /// The files of this machine among it.
    std::vector<NSURL> fileURLs;
};
