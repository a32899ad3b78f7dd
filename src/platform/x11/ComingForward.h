#pragma once

#include "x11/DesktopState.h"

namespace x11 {

/// The window that the window manager was last asked to bring forward, for as long as it hasn't answered: asking again
/// would only make it do the same work again, ahead of its answer. Of any thread, and read and written under the
/// mirror's lock alone, which whoever makes a request holds.
class ComingForward {
public:
    void note(xcb_window_t window, const DesktopState& state);
    void forget() { window_ = XCB_WINDOW_NONE; }

    bool isOf(xcb_window_t window, const DesktopState& state) const;
    bool isAny(const DesktopState& state) const { return isOf(window_, state); }

private:
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::uint64_t changesBefore_ = 0;
    /// Nanoseconds of the clock.
    std::uint64_t askedAt_ = 0;
};

}
