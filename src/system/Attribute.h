#pragma once

#include "accessibility/AXUIElement.h"
#include "base/CGGeometry.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// An attribute of an element, read and checked: empty when the call fails or the value is of another type. Any thread.
namespace Attribute {

std::optional<bool> boolean(const AXUIElement& element, std::string_view attribute);
std::optional<std::string> text(const AXUIElement& element, std::string_view attribute);
std::optional<CGPoint> point(const AXUIElement& element, std::string_view attribute);
std::optional<CGSize> size(const AXUIElement& element, std::string_view attribute);
std::optional<AXUIElement> element(const AXUIElement& element, std::string_view attribute);
std::optional<std::vector<AXUIElement>> elements(const AXUIElement& element, std::string_view attribute);

/// The window server's number of a window element.
std::optional<std::uint32_t> windowNumber(const AXUIElement& window);

/// The element of an application, on which and on what is read from it a call may take `timeout` seconds.
AXUIElement application(pid_t pid, double timeout);

}
