#pragma once

#include "model/BarItem.h"
#include "system/Displays.h"

#include <optional>
#include <vector>

/// Which buttons a bar shows. Main thread.
namespace DockModel {

/// What the bar on `display` shows, given how many buttons it has room for; without a display, what all bars together
/// could show.
std::vector<BarItem> entries(int capacity, const std::optional<DisplayInfo>& display);
/// One item per window, in the place of each application that has windows.
std::vector<BarItem> expand(const std::vector<BarItem>& items);

}
