#pragma once

#include "base/CGGeometry.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace host {

struct Display {
    /// Unique among the attached displays; absent only where the desktop can't number one.
    std::optional<std::uint32_t> number;
    /// The display's lasting identifier, under which the list of spaces names it.
    std::optional<std::string> uuid;
    /// Screen space, points.
    CGRect frame;
    /// `frame` less the menu bar and what other programs' panels reserve; never less our own bars. Screen space.
    CGRect visibleFrame;

    bool operator==(const Display&) const = default;
};

/// The attached displays. Main thread.
class Displays {
public:
    virtual ~Displays() = default;

    /// The primary display, whose bottom left corner is the origin of screen space, comes first.
    virtual const std::vector<Display>& all() = 0;
    /// The index in `all()` of the display that holds the keyboard focus; absent when there is no display.
    virtual std::optional<std::size_t> main() = 0;

    /// Set by the layer: a display came, went, or changed a frame.
    std::function<void()> onChange;
};

}
