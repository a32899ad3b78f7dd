#pragma once

#include "x11/RootChildren.h"
#include "x11/WindowRecord.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace x11 {

/// What is known of the desktop's windows, all from events: reading it asks nobody.
struct DesktopState {
    /// The window by which a window manager that speaks EWMH shows that it is there; none without one.
    xcb_window_t manager = XCB_WINDOW_NONE;
    std::unordered_set<xcb_atom_t> supported;
    /// Whether the window manager marks iconified windows with _NET_WM_STATE_HIDDEN.
    bool hasHiddenState = false;

    std::unordered_map<xcb_window_t, WindowRecord> windows;
    /// The windows by their frames: mostly one in each.
    std::unordered_multimap<xcb_window_t, xcb_window_t> clients;
    /// In the order in which they were first mapped.
    std::vector<const WindowRecord*> appearance;
    /// By process, in the same order; no process without any.
    std::unordered_map<pid_t, std::vector<const WindowRecord*>> owned;
    /// Bottom to top, as the window manager lists them; it may be behind `windows`. Not every one follows with that
    /// what it does with its frames: it decides only among windows that share one.
    std::vector<xcb_window_t> managedStacking;
    RootChildren rootChildren;

    xcb_window_t active = XCB_WINDOW_NONE;
    /// Counts the changes of it.
    std::uint64_t activeChanges = 0;
    /// Windows that were active, the latest last.
    std::vector<xcb_window_t> activations;

    /// 0 where the window manager has no desktops.
    std::uint32_t desktopCount = 0;
    std::uint32_t currentDesktop = 0;
    Points points;
    /// Whether a compositing manager runs.
    bool isComposited = false;

    bool isManaged() const { return manager != XCB_WINDOW_NONE; }
    /// Null when there is no such window, or it is withdrawn.
    const WindowRecord* find(xcb_window_t window) const;
    /// The windows, listed or not, that a child of the root holds.
    std::vector<const WindowRecord*> clientsIn(xcb_window_t frame) const;
    bool isListed(const WindowRecord& window) const;
    bool isIconic(const WindowRecord& window) const;
    bool isOnCurrentDesktop(const WindowRecord& window) const;
    /// Decorations included, shadows not.
    Rect outer(const WindowRecord& window) const;
    /// The desktop it lies on, or `allDesktops`.
    std::uint32_t desktopOf(const WindowRecord& window) const;

    /// The listed windows.
    std::vector<const WindowRecord*> frontToBack() const;
    std::vector<const WindowRecord*> byAppearance() const;
    /// Whether the process owns a listed window.
    bool isOwner(pid_t pid) const;
    /// A process's listed windows but for docks and the desktop's own, front first.
    std::vector<const WindowRecord*> windowsOf(pid_t pid) const;
    /// Among those, the one that was active last; null when none ever was.
    const WindowRecord* lastActiveOf(pid_t pid) const;
};

}
