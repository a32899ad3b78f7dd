#pragma once

#include "appkit/NSScreen.h"
#include "base/CGGeometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A display that can carry a bar.
struct DisplayInfo {
    NSScreen screen;
    /// The window server's number of the display.
    std::uint32_t displayID = 0;
    /// The display's UUID, under which the list of spaces names it; absent when it has none.
    std::optional<std::string> cgsIdentifier;

    /// Screen space.
    const CGRect& frame() const { return screen.frame(); }
};

/// Which displays there are, and which a window belongs to. Each call asks the system afresh. Main thread.
namespace Displays {

/// In the order of the screens; a screen without a number is left out.
std::vector<DisplayInfo> all();

std::optional<std::uint32_t> displayID(const NSScreen& screen);
std::optional<std::string> cgsIdentifier(std::uint32_t displayID);
std::optional<NSScreen> screenFor(std::uint32_t displayID);

/// The screen that a rectangle in window space overlaps most, of equal overlaps the first; the screen with the focus
/// where it overlaps none.
std::optional<NSScreen> screenContaining(const CGRect& rect);
/// The same, for many rectangles, with the screens asked for once.
std::optional<NSScreen> screenContaining(const CGRect& rect, const std::vector<NSScreen>& screens);

}
