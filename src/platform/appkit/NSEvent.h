#pragma once

#include "base/CGGeometry.h"

#include <functional>
#include <memory>

/// An input event, as a view gets it.
struct NSEvent {
    /// In the window's coordinates: origin at its lower left corner, y up.
    CGPoint locationInWindow;

    /// Where the pointer is now, in screen space.
    static CGPoint mouseLocation();

    using Monitor = std::shared_ptr<const void>;
    static constexpr unsigned long long maskMouseMoved = 1ULL << 5;
    static constexpr unsigned long long maskLeftMouseDragged = 1ULL << 6;
    /// Calls the handler when the pointer moves over other programs' windows. Null when the desktop can't tell. Main
    /// thread.
    static Monitor addGlobalMonitor(unsigned long long mask, std::function<void()> handler);
    static void removeMonitor(const Monitor& monitor);
};
