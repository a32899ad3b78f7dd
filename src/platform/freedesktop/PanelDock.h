#pragma once

#include "base/Value.h"
#include "freedesktop/PanelKind.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The desktop's own panel in the Dock's place: the one that runs on the bar's edge stands for "com.apple.dock".
///
/// Its settings are read into that domain, and the domain is applied to it whenever the Dock is started anew. What the
/// domain has no words for is kept in it under a key of our own, the record: the panel's settings as they were, those
/// that weren't set included. So a backup of the domain gives back each exactly. The same record lies in a file of its
/// own while the panel stands changed: a backup from before the panel was there gives it back too. Any thread, one at a
/// time.
namespace freedesktop::PanelDock {

/// A pinned program as the Dock's list has it.
struct Tile {
    std::string label;
    std::string url;
};
/// Absent for a desktop entry of no application.
using TileOf = std::function<std::optional<Tile>(const std::string& desktopEntry)>;

/// A panel on the screen.
struct Panel {
    const PanelKind* kind;
    std::string name;
    bool operator==(const Panel&) const = default;
};

/// Takes the panel of those programs that is on the bar's edge for the Dock: reads what it has into the domain, where
/// that tells something else. One that was left half given back is given back first. Absent when there is none, and the
/// domain tells of none from then on, unless one still has to be given back.
std::optional<Panel> takeIn(const std::vector<std::string>& programs, const TileOf& tileOf);

/// Starts the Dock anew: has the panel be as the domain says. False when some of it couldn't be written; then the next
/// time does.
bool relaunch();

}
