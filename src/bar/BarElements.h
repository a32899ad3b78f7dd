#pragma once

#include "appkit/NSAccessibilityElement.h"
#include "bar/BarPicture.h"

#include <functional>
#include <vector>

/// What a bar shows, as screen readers have it.
namespace BarElements {

/// Gives what a click on the thing of that `BarHit` value does.
using Actions = std::function<std::function<void()>(int hit)>;

/// A button for each tile, from left to right.
std::vector<NSAccessibilityElement> of(const BarPicture& picture, const Actions& actions);

}
