#pragma once

#include "appkit/NSScreen.h"
#include "base/CGGeometry.h"

#include <optional>

/// Keeps other programs' windows clear of the bar. Twice a second floating windows of any program are lifted off it,
/// and the focused window is resized, moved, or brought back from full screen. Nothing else is touched. Main thread.
namespace WindowTamer {

/// Begins to tick, for the life of the process.
void start();
/// Whether the focused window is looked after.
bool isEnabled();
/// Forgets everything: between tests.
void reset();

// Geometry, in window space.

/// What the bar leaves of a screen to other windows; of the one with the keyboard focus when none is given. Absent when
/// there is no screen at all.
std::optional<CGRect> targetRect(const std::optional<NSScreen>& screen = std::nullopt);
/// Where a window that reaches into the bar must go to be clear of it: moved off it, and made lower only if it wouldn't
/// fit. Absent when it is clear. A rectangle may pass the target's edge by one point.
std::optional<CGRect> clearedFrame(const CGRect& frame, const CGRect& target);
/// Whether a frame reaches into the bar beyond `target`.
bool overlapsBar(const CGRect& frame, const CGRect& target);

}
