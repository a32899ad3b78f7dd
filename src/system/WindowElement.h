#pragma once

#include "accessibility/AXUIElement.h"

#include <cstdint>
#include <optional>
#include <vector>

/// A window as the accessibility interface has it. Any thread; each call takes as long as the application's time-out.
namespace WindowElement {

/// The one of an application's windows that has the window server's number; absent when none has.
std::optional<AXUIElement> find(const std::vector<AXUIElement>& windows, std::uint32_t number);

/// Makes it its application's main window and puts it in front of the others; whether it could be put there.
bool raise(const AXUIElement& window);
/// The same, un-minimised.
bool bringForward(const AXUIElement& window);

}
