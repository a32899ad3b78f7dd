#pragma once

#include "appkit/NSScreen.h"
#include "base/CGGeometry.h"

#include <optional>

/// What the bar leaves to other windows. Window space. Main thread.
namespace WindowTamer {

/// What the bar leaves of a screen to other windows; of the one with the keyboard focus when none is given. Absent when
/// there is no screen at all.
std::optional<CGRect> targetRect(const std::optional<NSScreen>& screen = std::nullopt);
/// Where a window that reaches into the bar must go to be clear of it: moved off it, and made lower only if it wouldn't
/// fit. Absent when it is clear. A rectangle may pass the target's edge by one point.
std::optional<CGRect> clearedFrame(const CGRect& frame, const CGRect& target);
/// Whether a frame reaches into the bar beyond `target`.
bool overlapsBar(const CGRect& frame, const CGRect& target);

}
