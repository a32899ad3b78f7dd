#pragma once

#include "host/Accessibility.h"

#include <string_view>

/// The Dock's accessibility tree: the application has one list, the list has a tile a launcher, and a tile has the
/// title "AXTitle" and, while it shows a badge, the text "AXStatusLabel". Main thread.
namespace DockTree {

/// Whether the element belongs to it.
bool holds(const host::ElementID& element);

AXError read(const host::ElementID& element, std::string_view attribute, double timeout, host::AttributeValue& value);

}
