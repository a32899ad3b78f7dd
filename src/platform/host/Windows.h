#pragma once

#include "base/Value.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace host {

/// The window server's list of windows and spaces, as property-list values; the keys and types are those of the calls
/// in windowserver/. Reading costs no round trip to anybody. Main thread.
class Windows {
public:
    virtual ~Windows() = default;

    /// All windows, front first: an array of dictionaries. With `onScreenOnly`, just those that show now and are no
    /// part of the desktop itself. Absent when the list can't be had.
    virtual std::optional<Value> list(bool onScreenOnly) = 0;

    /// Counts what has happened to windows, processes and displays: the same count twice means that whatever is asked
    /// of them gets the same answer. Absent where the desktop can't tell.
    virtual std::optional<std::uint64_t> changeCount() = 0;

    /// The space in front; of several displays, that of the one with the focus. 0 when there is none.
    virtual std::uint64_t activeSpace() = 0;
    /// One dictionary a display. Absent when the desktop can't tell.
    virtual std::optional<Value> displaySpaces() = 0;
    /// The spaces a window lies on, an array of numbers. Absent when there is no such window.
    virtual std::optional<Value> spaces(std::uint32_t window) = 0;

    /// Set by the layer: another space came to the front, or windows opened, closed or changed their space.
    std::function<void()> onChange;
};

}
