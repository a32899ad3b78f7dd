#pragma once

#include "base/Value.h"
#include "freedesktop/PanelKind.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace freedesktop {

/// A panel on the screen.
struct Panel {
    const PanelKind* kind;
    std::string name;
    bool operator==(const Panel&) const = default;
};

/// A panel's settings by its own keys, as its store's texts; without one that isn't set.
using Natives = std::map<std::string, std::string>;

std::optional<std::string> at(const Natives& natives, const std::string& key);
void put(Natives& natives, const std::string& key, const std::optional<std::string>& text);

/// What a panel has, in its own words and in those of the Dock's domain.
struct PanelRecord {
    Panel panel;
    Natives natives;
    Value::Dictionary words;

    Value value() const;
    static std::optional<PanelRecord> of(const Value* value);
};

/// What is known of a panel as long as it stands changed: kept in a file of its own.
struct ChangedPanel {
    PanelRecord had;
    /// All that each key was made to be since; absent for no longer set.
    std::map<std::string, std::vector<std::optional<std::string>>> made;

    void addMade(const Natives& natives);
    bool isMade(const std::string& key, const std::optional<std::string>& text) const;

    static std::optional<ChangedPanel> read();
    /// Both are false when the file can't be changed.
    bool write() const;
    static bool forget();
};

}
