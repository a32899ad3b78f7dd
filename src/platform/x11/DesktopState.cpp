#include "x11/DesktopState.h"

#include <algorithm>
#include <ranges>

namespace x11 {
namespace {

/// The frame as the window manager says that it is drawn. A frame's window can be larger: some have invisible borders
/// to grab a window by. Absent where what it says can't be.
std::optional<Rect> visibleFrame(const WindowRecord& window, const RootChild& frame)
{
    if (!window.frameExtents || window.frame == window.id)
        return std::nullopt;
    const Rect client {
        frame.outer.x + frame.border + window.parentInFrame.x + window.position.x + window.border,
        frame.outer.y + frame.border + window.parentInFrame.y + window.position.y + window.border,
        window.width,
        window.height,
    };
    const Rect visible = grown(client, *window.frameExtents);
    if (contains(frame.outer, visible))
        return visible;
    // While it iconifies a window or gives it back, a window manager may shrink the frame for show. The client in it
    // stays as it was.
    const bool isShrunk = frame.outer.width < window.width || frame.outer.height < window.height;
    if (isShrunk && !window.facts.states.shaded)
        return Rect { frame.outer.x, frame.outer.y, visible.width, visible.height };
    return std::nullopt;
}

}

const WindowRecord* DesktopState::find(xcb_window_t window) const
{
    const auto found = windows.find(window);
    return found != windows.end() && isListed(found->second) ? &found->second : nullptr;
}

bool DesktopState::isListed(const WindowRecord& window) const
{
    if (window.facts.wmState == WmState::withdrawn)
        return false;
    if (isManaged() || window.facts.wmState == WmState::iconic)
        return true;
    return window.isMapped && (window.facts.wmState || !window.facts.className.empty());
}

bool DesktopState::isIconic(const WindowRecord& window) const
{
    // Not every window manager keeps WM_STATE for iconified windows alone, nor _NET_WM_STATE_HIDDEN.
    const bool isIconicState = window.facts.wmState == WmState::iconic;
    if (!isManaged())
        return isIconicState && !window.isMapped;
    const NetStates& states = window.facts.states;
    return hasHiddenState ? states.hidden && (!states.shaded || isIconicState) : isIconicState;
}

bool DesktopState::isOnCurrentDesktop(const WindowRecord& window) const
{
    const std::uint32_t desktop = desktopOf(window);
    return desktop == allDesktops || desktop == currentDesktop;
}

std::uint32_t DesktopState::desktopOf(const WindowRecord& window) const
{
    if (desktopCount == 0)
        return 0;
    return window.facts.desktop.value_or(currentDesktop);
}

Rect DesktopState::outer(const WindowRecord& window) const
{
    const RootChild* frame = rootChildren.find(window.frame);
    if (!frame)
        return { window.position.x, window.position.y, window.width, window.height };
    const Rect outer = visibleFrame(window, *frame).value_or(frame->outer);
    if (!window.shadows)
        return outer;
    const Rect visible = shrunk(outer, *window.shadows);
    return visible.width > 0 && visible.height > 0 ? visible : outer;
}

std::vector<const WindowRecord*> DesktopState::frontToBack() const
{
    std::vector<const WindowRecord*> result;
    const auto add = [&](xcb_window_t id) {
        if (const WindowRecord* window = find(id))
            result.push_back(window);
    };
    if (isManaged()) {
        std::ranges::for_each(managedStacking | std::views::reverse, add);
        const auto& children = rootChildren.bottomToTop();
        std::unordered_map<xcb_window_t, std::size_t> heights;
        for (std::size_t height = 0; height < children.size(); ++height)
            heights.emplace(children[height].id, height);
        // A frame that isn't known yet is a new one.
        const auto height = [&](const WindowRecord* window) {
            const auto found = heights.find(window->frame);
            return found == heights.end() ? children.size() : found->second;
        };
        std::ranges::stable_sort(result, std::ranges::greater(), height);
    } else {
        std::ranges::for_each(
            rootChildren.bottomToTop() | std::views::reverse | std::views::transform(&RootChild::id), add);
    }
    return result;
}

std::vector<const WindowRecord*> DesktopState::byAppearance() const
{
    std::vector<const WindowRecord*> result;
    for (const xcb_window_t id : appearance) {
        if (const WindowRecord* window = find(id))
            result.push_back(window);
    }
    return result;
}

std::vector<const WindowRecord*> DesktopState::windowsOf(pid_t pid) const
{
    auto result = frontToBack();
    std::erase_if(
        result, [&](const WindowRecord* window) { return window->pid != pid || window->facts.isPartOfDesktop(); });
    return result;
}

const WindowRecord* DesktopState::lastActiveOf(pid_t pid) const
{
    for (const xcb_window_t id : activations | std::views::reverse) {
        const WindowRecord* window = find(id);
        if (window && window->pid == pid && !window->facts.isPartOfDesktop())
            return window;
    }
    return nullptr;
}

}
