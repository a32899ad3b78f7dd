#include "system/WindowElement.h"

#include "system/Attribute.h"

#include <algorithm>

namespace WindowElement {

std::optional<AXUIElement> find(const std::vector<AXUIElement>& windows, std::uint32_t number)
{
    const auto window = std::ranges::find(windows, std::optional(number), Attribute::windowNumber);
    return window == windows.end() ? std::nullopt : std::optional(*window);
}

bool raise(const AXUIElement& window)
{
    AXUIElementSetAttributeValue(window, "AXMain", true);
    return AXUIElementPerformAction(window, "AXRaise") == kAXErrorSuccess;
}

bool bringForward(const AXUIElement& window)
{
    AXUIElementSetAttributeValue(window, "AXMinimized", false);
    return raise(window);
}

}
