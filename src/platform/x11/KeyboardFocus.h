#pragma once

#include "x11/WindowManager.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>

namespace x11 {

/// The input focus, while a panel of ours has it. A panel takes it by itself rather than through the window manager, of
/// which many give a dock no focus at all; and it says that it takes input for just that long, so that none ever gives
/// it any unasked. Main thread.
class KeyboardFocus {
public:
    KeyboardFocus(const WindowMirror& mirror, WindowManager& manager);
    ~KeyboardFocus();

    /// The window must be mapped.
    void take(xcb_window_t panel);
    void giveBack();
    /// XCB_WINDOW_NONE when no panel has taken it.
    xcb_window_t holder() const { return holder_; }

private:
    const WindowMirror& mirror_;
    WindowManager& manager_;
    xcb_window_t holder_ = XCB_WINDOW_NONE;
    /// The window that had the focus before.
    xcb_window_t previous_ = XCB_WINDOW_NONE;
    /// There while a panel has taken the focus.
    class Watch;
    std::unique_ptr<Watch> watch_;
};

}
