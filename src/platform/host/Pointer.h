#pragma once

#include "base/CGGeometry.h"

#include <functional>
#include <optional>

namespace host {

/// The pointer, wherever it is; here, of a desktop that doesn't tell. Main thread.
class Pointer {
public:
    virtual ~Pointer() = default;

    /// Screen space: the lower left corner of the pixel under the pointer's tip, so that a rectangle's pixels are the
    /// points that it holds. Absent where the desktop doesn't tell it to a program that the pointer isn't over.
    virtual std::optional<CGPoint> location() { return std::nullopt; }

    /// Whether `onMove` is wanted. False when the desktop can't watch the pointer over other programs' windows.
    virtual bool watch(bool /*on*/) { return false; }
    /// Set by the layer: the pointer moved, a button held down or not, over whatever there is, windows of our own
    /// included. Left out is what can't concern anybody: movement over a window of ours with a button held down, which
    /// that window gets, and over another's that covers a panel of ours, which is then out of reach.
    std::function<void(bool buttonDown)> onMove;
};

}
