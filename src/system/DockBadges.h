#pragma once

#include <functional>
#include <map>
#include <string>

/// The badges that applications show on their tiles in the system Dock. Main thread.
namespace DockBadges {

using Map = std::map<std::string, std::string, std::less<>>;

/// Badge texts by the application's name as the Dock shows it; empty while the user doesn't want badges. The Dock is
/// read at most once a second, and a reading that fails leaves the last one in force.
Map current();

}
