#pragma once

#include "model/BarItem.h"

#include <optional>
#include <vector>

/// Which applications there are. Made afresh each time from the system and the settings; nothing fails but into an
/// empty list. Main thread.
namespace DockModel {

/// Pinned applications, those of the Dock first, then the other regular ones that run; in the user's order.
std::vector<BarItem> items();
/// The item behind the bar's own Finder button; absent while Finder doesn't run.
std::optional<BarItem> finderItem();

}
