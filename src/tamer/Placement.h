#pragma once

#include "accessibility/AXUIElement.h"
#include "base/CGGeometry.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>

/// Putting windows where they belong, and what was asked of them so far. Rectangles are in window space. What a window
/// makes of it isn't looked at. Main thread.
namespace Placement {

/// How long, in seconds, a call on another program may take.
inline constexpr double messagingTimeout = 0.5;

/// A window by its number. The number can be given out again, to another process's window.
struct WindowName {
    pid_t pid = 0;
    std::uint32_t number = 0;
    auto operator<=>(const WindowName&) const = default; // NOLINT(modernize-use-nullptr): the checker's own zero
};

/// The rectangle that the window was last asked to take.
std::optional<CGRect> placed(const WindowName& window);
void remember(const WindowName& window, const CGRect& rect);
/// Counts what was asked of windows.
std::uint64_t requestCount();
/// Whether two rectangles are within 2 points of each other in y and in height.
bool isSamePlace(const CGRect& a, const CGRect& b);

void setPosition(const AXUIElement& window, CGPoint position);
void setSize(const AXUIElement& window, CGSize size);
/// Whether it was told to.
AXError leaveFullScreen(const AXUIElement& window);
/// Both, the size twice: a window is fitted to the screen that it lies on before and after the move.
void setFrame(const AXUIElement& window, const CGRect& frame);
/// Asks the window to take the rectangle, and remembers it.
void place(const AXUIElement& window, const WindowName& name, const CGRect& rect);

/// For messages: without its fraction.
std::int64_t whole(double value);

}
