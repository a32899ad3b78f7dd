#pragma once

#include "appkit/NSImage.h"

#include <cstdint>
#include <functional>
#include <optional>

/// Small pictures of windows, captured in the background and kept for the life of the desktop. Main thread.
namespace Preview {

/// The picture to show now, if there is one; an old one too. One that is missing or has become 20 seconds old is
/// captured, once at a time, and `onReady` is called when that has worked.
std::optional<NSImage> thumbnail(std::uint32_t windowID, std::function<void()> onReady);

/// Whether the last capture worked; false before the first.
bool isAvailable();

/// Captures some window and tells whether that worked, now or later.
void check(std::function<void(bool)> completion);

}
