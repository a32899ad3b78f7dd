#pragma once

#include "embedded/Scenario.h"

#include <map>
#include <string>
#include <vector>

namespace embedded {

/// What the Dock process knows: its preferences as of its start, and the badges that applications gave it. Main thread.
class Dock {
public:
    enum class Edge { left, bottom, right };

    /// `file` is the Dock's preference domain.
    explicit Dock(std::string file)
        : file_(std::move(file))
    {
    }

    /// Writes the preferences of a new user, unless there are some.
    void seed(const std::vector<Scenario::Tile>& tiles) const;
    /// What a starting Dock does.
    void readPreferences();

    bool hides() const { return hides_; }
    Edge edge() const { return edge_; }
    /// Points.
    double tileSize() const { return tileSize_; }
    const std::vector<Scenario::Tile>& tiles() const { return tiles_; }

    std::map<std::string, std::string> badges;

private:
    std::string file_;
    bool hides_ = false;
    Edge edge_ = Edge::bottom;
    double tileSize_ = 48;
    std::vector<Scenario::Tile> tiles_;
};

}
