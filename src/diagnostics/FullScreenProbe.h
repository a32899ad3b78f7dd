#pragma once

#include "accessibility/AXUIElement.h"

#include <string>

/// Whether full-screen windows can be reached and changed. It takes them out of full screen and sizes them. Main
/// thread.
namespace FullScreenProbe {

void run();

/// An accessibility result in a word.
std::string describe(AXError error);
/// "WIDTHxHEIGHT" in whole points, "unavailable", or "unreadable" where it is no size.
std::string readSize(const AXUIElement& window);

}
