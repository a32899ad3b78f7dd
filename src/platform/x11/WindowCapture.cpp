#include "x11/WindowCapture.h"

#include "base/RunLoop.h"

#include <utility>

namespace x11 {
namespace {

/// How far the sides of the root's child lie outside of the visible frame.
Insets margins(const Rect& child, const Rect& visible)
{
    return { visible.x - child.x, child.right() - visible.right(), visible.y - child.y,
        child.bottom() - visible.bottom() };
}

}

void WindowCapture::capture(std::uint32_t window, int width, int height, std::function<void(host::Captured)> done)
{
    auto answer = [alive = std::weak_ptr(alive_), done = std::move(done)](host::Captured captured) {
        if (!alive.expired())
            done(std::move(captured));
    };
    const DesktopState& state = mirror_.state();
    const WindowRecord* record = state.find(window);
    const RootChild* child = record ? state.rootChildren.find(record->frame) : nullptr;
    if (!child) {
        RunLoop::main().perform([answer = std::move(answer)] { answer({ nullptr, "there is no such window" }); });
        return;
    }
    worker_.add({ child->id, margins(child->outer, state.outer(*record)), state.points.pixels(width),
        state.points.pixels(height), std::move(answer) });
}

}
