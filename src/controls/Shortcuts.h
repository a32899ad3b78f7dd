#pragma once

#include "model/BarItem.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The keys that work whatever program is in front: Option with a digit acts on that application button, Option and
/// Command with B hides or shows the bar, with D toggles show desktop. What they claim reaches no other program. Main
/// thread.
namespace Shortcuts {

/// The items of the bar that the digits count on.
extern std::function<std::vector<BarItem>()> itemsProvider;

/// Begins to watch the keyboard; does so once. Without the right to, there are no shortcuts until the next launch.
void start();
/// Whether the keyboard is being watched.
bool isTapEnabled();
/// Of the keys that it watches for, those that another program has: they never come here.
std::vector<std::string> takenKeys();
/// Has it watched again; `reason` is for the log. Nothing before `start` has succeeded.
void reenableTap(std::string_view reason);

}
