#pragma once

#include "accessibility/AXUIElement.h"
#include "diagnostics/TimeLimit.h"

#include <string>
#include <string_view>

/// What an application shows in its accessibility tree: texts, sliders, and the buttons of a player. An instance is one
/// walk of a tree. Any thread.
class AXTreeProbe {
public:
    /// Of the first running application whose name holds the fragment.
    static void run(const std::string& appNameFragment);

    /// An attribute's number as text; "-" where it is missing or of another type.
    static std::string number(const AXUIElement& element, std::string_view attribute);

private:
    void walk(const AXUIElement& element, int depth, int maxDepth);
    void reportNode(const AXUIElement& element, int depth);

    TimeLimit limit_;
    int nodesSeen_ = 0;
    int slidersFound_ = 0;
    int textFound_ = 0;
};
