#pragma once

#include "freedesktop/DesktopEntries.h"
#include "freedesktop/PanelRecord.h"

#include <memory>
#include <string>
#include <vector>

/// The desktop's own panel in the Dock's place: the one that runs on the bar's edge stands for "com.apple.dock".
///
/// Its settings are read into that domain, and the domain is applied to it whenever the Dock is started anew. What the
/// domain has no words for is kept in it under a key of our own, the record: the panel's settings as they were, those
/// that weren't set included. While the panel stands changed the same record lies in a file of its own. A domain that
/// has none, or another, was put in its place by a backup from another time: the panel then has back what it had. Any
/// thread, one at a time.
namespace freedesktop::PanelDock {

/// Where it is set which edge the bar is on: to be followed.
std::unique_ptr<PanelStore> barSettings();

/// Takes the panel of those programs that is on that edge for the Dock: reads what it has into the domain, where
/// that tells something else. One that was left half given back, or has left the edge, is given back first.
void takeIn(const std::vector<std::string>& programs, DesktopEntries& entries);

/// Starts the Dock anew: has the panel be as the domain says. Empty on success, else the reason; then the next time
/// does what couldn't be done.
std::string relaunch(DesktopEntries& entries);

}
