#pragma once

#include "base/RunLoop.h"
#include "host/Pointer.h"

namespace embedded {

/// The pointer, where the view or a test moves it. Main thread.
class Pointer final : public host::Pointer {
public:
    std::optional<CGPoint> location() override { return isKnown_ ? std::optional(location_) : std::nullopt; }
    bool watch(bool on) override
    {
        watched_ = on && isKnown_;
        return isKnown_;
    }

    /// From here on the desktop tells of the pointer only to the panel that it is over.
    void conceal()
    {
        isKnown_ = false;
        watched_ = false;
    }

    /// Screen space.
    void move(CGPoint to, bool buttonDown = false)
    {
        location_ = to;
        const RunLoop::Turn turn;
        if (watched_ && onMove)
            onMove(buttonDown);
    }
    /// The pointer moved over one of our panels. Screen space.
    void moveWithin(CGPoint to, bool buttonDown)
    {
        location_ = to;
        if (!buttonDown)
            move(to);
    }

private:
    CGPoint location_;
    bool watched_ = false;
    bool isKnown_ = true;
};

}
