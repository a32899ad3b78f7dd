#pragma once

#include "freedesktop/PanelStore.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace freedesktop {

enum class PanelEdge { bottom, top, other };

/// A panel or dock program that a desktop may bring along, and where it keeps what concerns a taskbar on the same edge.
struct PanelKind {
    /// Also the file name of the program that runs.
    const char* name;
    /// The parts of its settings of which each is one panel on the screen, as `open` takes them.
    std::vector<std::string> (*panels)();
    std::unique_ptr<PanelStore> (*open)(const std::string& panel);
    PanelEdge (*edgeOf)(PanelStore& panel);

    const char* hidingKey;
    /// Out of sight whatever is on the screen, until the pointer comes to the edge.
    const char* hidden;
    const char* sizeKey;
    /// What stands before the number, where the store's texts tell types.
    const char* sizePrefix;
    int usualSize;
    int smallestSize;
    /// The order's key of `PanelPins`; null where it has no pinned programs of its own to give away.
    const char* pinsKey;
    /// Whether it reads its settings at its start alone, and undoes what is changed meanwhile.
    bool readsOnce;
};

/// One row a kind.
std::span<const PanelKind> panelKinds();
/// Null for a name of none.
const PanelKind* panelKindNamed(std::string_view name);

}
