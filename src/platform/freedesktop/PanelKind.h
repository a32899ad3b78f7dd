#pragma once

#include "freedesktop/PanelStore.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace freedesktop {

enum class PanelEdge { bottom, top, other };

/// A panel or dock program that a desktop may bring along, and where it keeps what concerns a taskbar on the same edge.
struct PanelKind {
    const char* name;
    /// The file name of the program that runs.
    const char* program;
    /// The parts of its settings of which each is one panel on the screen, as `open` takes them.
    std::vector<std::string> (*panels)();
    std::unique_ptr<PanelStore> (*open)(const std::string& panel);

    const char* placeKey;
    PanelEdge (*edgeOf)(const std::string& place);
    const char* hidingKey;
    /// Out of sight whatever is on the screen, until the pointer comes to the edge.
    const char* hidden;
    const char* sizeKey;
    /// What stands before the number, where the store's texts tell types.
    const char* sizePrefix;
    int usualSize;
    int smallestSize;
    /// Null where it has no pinned programs of its own to give away; else the key that `Pins` below belongs to.
    const char* pinsKey;
};

/// One row a kind.
std::span<const PanelKind> panelKinds();
/// Null for a name of none.
const PanelKind* panelKindNamed(std::string_view name);

/// The pinned programs of a panel: the paths of their desktop entries, in its order. A pins text holds the files that
/// make them up too, so that they can be put back.
std::string pinsText(const PanelKind& kind, PanelStore& store);
std::vector<std::string> pinnedEntries(const std::string& pinsText);
/// False when they can't all be written. A panel that runs takes files in as they come, so they come in their order.
bool setPins(const PanelKind& kind, PanelStore& store, const std::string& pinsText);
/// The pins text of a panel without any.
std::string noPins();

}
