#pragma once

#include "accessibility/AXUIElement.h"

#include <string>
#include <string_view>

/// How far an application can be raised, and what it tells of its windows.
namespace WindowProbe {

/// Of the first running application whose name holds the fragment. Main thread.
void run(const std::string& appNameFragment);

/// An attribute as "true", "false" or its text; "-" where it is missing or of another type. Any thread.
std::string boolean(const AXUIElement& element, std::string_view attribute);
std::string string(const AXUIElement& element, std::string_view attribute);

}
