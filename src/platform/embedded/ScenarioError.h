#pragma once

#include <string>

namespace embedded {

/// Why a text is no scenario.
struct ScenarioError {
    /// From 1.
    int line = 1;
    std::string reason;

    /// "line 12: window 7: owner 99 is no process of this scenario"
    std::string text() const { return "line " + std::to_string(line) + ": " + reason; }
};

}
