#pragma once

#include "x11/Property.h"
#include "x11/WindowRecord.h"

#include <cstdint>
#include <span>

namespace x11 {

/// A property of other programs' windows that is read when a window appears and again when it changes.
struct WindowProperty {
    xcb_atom_t Atoms::*name;
    /// The most that is transferred of it, in units of four bytes.
    std::uint32_t longs;
    /// Puts what it says in the record, or clears that when it is absent or of the wrong type.
    void (*apply)(WindowRecord&, const Property&, const Atoms&);
    /// Changes of titles come in floods, and nobody waits for them.
    bool isTitle = false;
};

std::span<const WindowProperty> windowProperties();

}
