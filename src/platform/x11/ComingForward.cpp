#include "x11/ComingForward.h"

#include "base/Clock.h"
#include "base/RunLoop.h"

namespace x11 {

void ComingForward::note(xcb_window_t window, const DesktopState& state)
{
    window_ = window;
    changesBefore_ = state.activeChanges;
    askedAt_ = RunLoop::main().clock().nanoseconds();
}

/// That the active window has changed is an answer, even where it has come back to the one that it was.
bool ComingForward::isOf(xcb_window_t window, const DesktopState& state) const
{
    constexpr std::uint64_t patience = 250'000'000;
    return window != XCB_WINDOW_NONE && window_ == window && changesBefore_ == state.activeChanges
        && RunLoop::main().clock().nanoseconds() - askedAt_ < patience;
}

}
