#include "x11/WindowManager.h"

#include <unistd.h>

#include <algorithm>
#include <ranges>

namespace x11 {
namespace {

/// The window that stands for its process when that comes forward; null when all are iconified.
const WindowRecord* leadingWindow(const DesktopState& state, pid_t pid)
{
    auto windows = state.windowsOf(pid);
    std::erase_if(windows, [&](const WindowRecord* window) { return state.isIconic(*window); });
    if (windows.empty())
        return nullptr;
    // Of those that never were active, the one in front.
    return *std::ranges::max_element(windows, {}, [&](const WindowRecord* window) {
        const auto place = std::ranges::find(state.activations, window->id);
        return place == state.activations.end() ? -1 : place - state.activations.begin();
    });
}

}

WindowManager::WindowManager(Connection& connection, const WindowMirror& mirror)
    : connection_(connection)
    , mirror_(mirror)
    , ewmh_(connection, mirror.state())
    , bare_(connection)
{
}

WindowRequests& WindowManager::requests(const DesktopState& state)
{
    if (state.isManaged())
        return ewmh_;
    return bare_;
}

bool WindowManager::with(xcb_window_t window, const Act& act)
{
    const bool exists = mirror_.read([&](const DesktopState& state) {
        const WindowRecord* record = state.find(window);
        if (record)
            act(requests(state), state, *record);
        return record != nullptr;
    });
    connection_.flush();
    return exists;
}

bool WindowManager::withEach(pid_t pid, const Act& act)
{
    const bool hasAny = mirror_.read([&](const DesktopState& state) {
        const auto windows = state.windowsOf(pid);
        for (const WindowRecord* window : windows)
            act(requests(state), state, *window);
        return !windows.empty();
    });
    connection_.flush();
    return hasAny;
}

bool WindowManager::activate(pid_t pid)
{
    const bool hasAny = mirror_.read([&](const DesktopState& state) {
        if (const WindowRecord* window = leadingWindow(state, pid))
            requests(state).activate(*window);
        return !state.windowsOf(pid).empty();
    });
    connection_.flush();
    return hasAny;
}

bool WindowManager::reopen(pid_t pid)
{
    const bool hasAny = mirror_.read([&](const DesktopState& state) {
        const auto windows = state.windowsOf(pid);
        if (windows.empty())
            return false;
        if (const WindowRecord* shown = leadingWindow(state, pid)) {
            requests(state).activate(*shown);
            return true;
        }
        const WindowRecord* last = state.lastActiveOf(pid);
        const WindowRecord& iconified = last ? *last : *windows.front();
        requests(state).deiconify(iconified);
        requests(state).activate(iconified);
        return true;
    });
    connection_.flush();
    return hasAny;
}

void WindowManager::activateLast()
{
    mirror_.read([&](const DesktopState& state) {
        for (const xcb_window_t id : state.activations | std::views::reverse) {
            const WindowRecord* window = state.find(id);
            if (window && !window->facts.isPartOfDesktop() && window->pid != getpid() && !state.isIconic(*window))
                return requests(state).activate(*window);
        }
    });
    connection_.flush();
}

bool WindowManager::isBringingForward() const
{
    return mirror_.read([this](const DesktopState&) { return ewmh_.isBringingForward(); });
}

bool WindowManager::setOuter(xcb_window_t window, std::optional<Point> corner, std::optional<Point> size)
{
    return with(window, [&](WindowRequests& ask, const DesktopState& state, const WindowRecord& record) {
        // The window manager counts a client's own shadows as part of it.
        const Insets shadows = record.shadows.value_or(Insets {});
        const Rect outer = state.outer(record);
        std::optional<Point> asked = corner;
        if (asked)
            asked = Point { corner->x - shadows.left, corner->y - shadows.top };
        std::optional<Point> client = size;
        if (client)
            client = Point { std::max(1, record.width + size->x - outer.width),
                std::max(1, record.height + size->y - outer.height) };
        ask.moveResize(record, asked, client);
    });
}

bool WindowManager::cutOff(pid_t pid)
{
    return withEach(pid, [this](WindowRequests&, const DesktopState&, const WindowRecord& window) {
        xcb_kill_client(connection_, window.id);
    });
}

}
