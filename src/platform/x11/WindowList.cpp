#include "x11/WindowList.h"

#include <algorithm>
#include <utility>

namespace x11 {
namespace {

/// 0 is no space, so the first desktop is 1.
std::uint64_t spaceOf(std::uint32_t desktop)
{
    return std::uint64_t(desktop) + 1;
}

/// A full-screen window lies on a desktop as any other does. That it is one is told by a space of that number and its
/// own, beyond all desktops.
constexpr std::uint64_t firstFullScreenSpace = std::uint64_t { 1 } << 32;

std::uint32_t spaceCount(const DesktopState& state)
{
    return std::max(1U, state.desktopCount);
}

std::vector<std::uint64_t> spacesOf(const DesktopState& state, const WindowRecord& window)
{
    const std::uint32_t desktop = state.desktopOf(window);
    if (desktop != allDesktops)
        return { spaceOf(desktop) };
    std::vector<std::uint64_t> all;
    for (std::uint32_t each = 0; each < spaceCount(state); ++each)
        all.push_back(spaceOf(each));
    return all;
}

bool isOnScreen(const DesktopState& state, const WindowRecord& window)
{
    return !state.isIconic(window) && state.isOnCurrentDesktop(window);
}

host::Window describe(const DesktopState& state, const WindowRecord& window)
{
    return { window.id, window.pid, window.title(), window.facts.layer(), state.points.windowSpace(state.outer(window)),
        spacesOf(state, window), isOnScreen(state, window), window.facts.wantsAttention() && !window.wasLookedAt };
}

}

const std::shared_ptr<const host::Window>& WindowList::record(const WindowRecord& window)
{
    const DesktopState& state = mirror_.state();
    const std::uint32_t desktop = state.desktopOf(window);
    if (entries_.size() <= window.slot)
        entries_.resize(window.slot + 1);
    Entry& entry = entries_[window.slot];
    const bool isCurrent = entry.record && entry.revision == window.revision && entry.desktop == desktop
        && entry.desktopCount == state.desktopCount && entry.record->isOnScreen == isOnScreen(state, window);
    if (!isCurrent)
        entry = { window.revision, desktop, state.desktopCount,
            std::make_shared<const host::Window>(describe(state, window)) };
    return entry.record;
}

WindowList::List WindowList::all()
{
    if (std::exchange(allCount_, mirror_.windowChangeCount()) == mirror_.windowChangeCount())
        return all_;
    all_.clear();
    for (const WindowRecord* window : mirror_.state().byAppearance())
        all_.push_back(record(*window));
    return all_;
}

WindowList::List WindowList::onScreen()
{
    const DesktopState& state = mirror_.state();
    List list;
    for (const WindowRecord* window : state.frontToBack())
        if (isOnScreen(state, *window) && window->facts.kind() != WindowKind::desktop)
            list.push_back(record(*window));
    return list;
}

std::shared_ptr<const host::Window> WindowList::find(std::uint32_t number)
{
    const WindowRecord* window = mirror_.state().find(number);
    return window ? record(*window) : nullptr;
}

std::optional<std::uint64_t> WindowList::activeSpace()
{
    return spaceOf(mirror_.state().currentDesktop);
}

std::vector<host::DisplaySpaces> WindowList::displaySpaces()
{
    std::vector<host::Space> spaces;
    for (std::uint32_t desktop = 0; desktop < spaceCount(mirror_.state()); ++desktop)
        spaces.push_back({ spaceOf(desktop), false, {} });
    for (const WindowRecord* window : mirror_.state().byAppearance())
        if (window->facts.states.fullScreen)
            spaces.push_back({ firstFullScreenSpace + window->id, true, window->pid });

    std::vector<host::DisplaySpaces> displays;
    for (const host::Display& display : monitors_.all())
        displays.push_back({ display.uuid, activeSpace(), spaces });
    return displays;
}

}
