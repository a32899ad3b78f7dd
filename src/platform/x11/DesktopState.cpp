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

std::vector<const WindowRecord*> DesktopState::clientsIn(xcb_window_t frame) const
{
    std::vector<const WindowRecord*> result;
    const auto [first, end] = clients.equal_range(frame);
    std::transform(first, end, std::back_inserter(result), [&](const auto& each) { return &windows.at(each.second); });
    return result;
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
    const auto add = [&](const WindowRecord* window) {
        if (isListed(*window))
            result.push_back(window);
    };
    // A frame that isn't known yet is a new one, and so is a window that the window manager hasn't stacked yet.
    const auto isNew = [this](const WindowRecord* window) { return !rootChildren.find(window->frame); };
    const auto height = [this](const WindowRecord* window) { return std::ranges::find(managedStacking, window->id); };
    std::ranges::for_each(appearance | std::views::reverse | std::views::filter(isNew), add);
    for (const RootChild& child : rootChildren.bottomToTop() | std::views::reverse) {
        auto inside = clientsIn(child.id);
        if (inside.size() > 1)
            std::ranges::stable_sort(inside, std::ranges::greater(), height);
        std::ranges::for_each(inside, add);
    }
    return result;
}

std::vector<const WindowRecord*> DesktopState::byAppearance() const
{
    std::vector<const WindowRecord*> result;
    result.reserve(appearance.size());
    std::ranges::copy_if(
        appearance, std::back_inserter(result), [this](const WindowRecord* window) { return isListed(*window); });
    return result;
}

bool DesktopState::isOwner(pid_t pid) const
{
    const auto owner = owned.find(pid);
    return owner != owned.end()
        && std::ranges::any_of(owner->second, [this](const WindowRecord* window) { return isListed(*window); });
}

std::vector<const WindowRecord*> DesktopState::windowsOf(pid_t pid) const
{
    if (!isOwner(pid))
        return {};
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
