#pragma once

#include "base/CGGeometry.h"

#include <functional>
#include <memory>
#include <optional>

/// An input event, as a view gets it.
struct NSEvent {
    /// In the window's coordinates: origin at its lower left corner, y up.
    CGPoint locationInWindow;

    /// Where the pointer is now, in screen space; absent where the desktop doesn't tell.
    static std::optional<CGPoint> mouseLocation();

    using Monitor = std::shared_ptr<const void>;
    static constexpr unsigned long long maskMouseMoved = 1ULL << 5;
    static constexpr unsigned long long maskLeftMouseDragged = 1ULL << 6;
    /// Calls the handler when the pointer has moved, wherever it is: over other programs' windows, over the desktop and
    /// over windows of our own, whose views may have learned of it too. Two movements belong to a window of ours alone
    /// and aren't told: those with a button held down, and all while a menu is open. Null when the desktop can't tell.
    /// Main thread.
    static Monitor addGlobalMonitor(unsigned long long mask, std::function<void()> handler);
    static void removeMonitor(const Monitor& monitor);
};
