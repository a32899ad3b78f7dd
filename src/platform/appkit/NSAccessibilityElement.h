#pragma once

#include "base/CGGeometry.h"

#include <functional>
#include <string>

/// What kind of thing something is to a screen reader.
enum class NSAccessibilityRole { group, toolbar, button, list, row };

/// A part of a view that is drawn rather than being a view of its own, as screen readers and other programs see it.
struct NSAccessibilityElement {
    /// Tells the element from its siblings. The same one is the same element, whatever else of it has changed.
    std::string identifier;
    NSAccessibilityRole role = NSAccessibilityRole::button;
    /// What it is called, and what there is to say beside that. UTF-8.
    std::string label;
    std::string help {};
    /// Of a button: it is pressed in.
    bool isSelected = false;
    /// In the view's coordinates.
    CGRect frame;
    /// Does what a click on it does.
    std::function<void()> press;
};
