#pragma once

#include "base/CGGeometry.h"

#include <functional>

namespace host {

/// The pointer, wherever it is. Main thread.
class Pointer {
public:
    virtual ~Pointer() = default;

    /// Screen space.
    virtual CGPoint location() = 0;

    /// Whether `onMove` is wanted. False when the desktop can't watch the pointer over other programs' windows.
    virtual bool watch(bool on) = 0;
    /// Set by the layer: the pointer moved over another program's window or the desktop, a button held down or not.
    std::function<void(bool buttonDown)> onMove;
};

}
