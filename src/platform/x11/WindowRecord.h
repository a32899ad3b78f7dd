#pragma once

#include "x11/Geometry.h"

#include <xcb/xcb.h>

#include <sys/types.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace x11 {

enum class WindowKind : std::uint8_t {
    normal,
    dialog,
    utility,
    splash,
    notification,
    popup,
    dock,
    desktop,
};

/// The desktop number of a window that is on all of them.
inline constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

/// The states of `WM_STATE`.
enum class WmState : std::uint32_t { withdrawn = 0, normal = 1, iconic = 3 };

/// The parts of `_NET_WM_STATE` that matter here.
struct NetStates {
    bool above = false;
    bool fullScreen = false;
    bool hidden = false;
    bool shaded = false;
    bool maximized = false;
    bool skipTaskbar = false;
    bool demandsAttention = false;
    bool operator==(const NetStates&) const = default;
};

/// What decides where a window is listed and whose it is.
struct WindowFacts {
    std::optional<WindowKind> declaredKind;
    bool isTransient = false;
    NetStates states;
    /// By its hints.
    bool isUrgent = false;
    std::optional<WmState> wmState;
    std::optional<std::uint32_t> desktop;
    std::string instanceName;
    std::string className;
    bool operator==(const WindowFacts&) const = default;

    WindowKind kind() const;
    /// The layer of the window list.
    int layer() const;
    /// Whether it is one of the windows that people switch between, and so makes its process an application.
    bool isOrdinary() const;
    /// In either way to say so.
    bool wantsAttention() const { return isUrgent || states.demandsAttention; }
    /// Whether it is a panel or the desktop's own, which stay when their process is hidden or brought forward.
    bool isPartOfDesktop() const;
};

/// `_NET_WM_STRUT_PARTIAL`: left, right, top, bottom, then the start and end of each along its edge.
using Strut = std::array<std::uint32_t, 12>;

/// Another program's window as last heard from the server.
struct WindowRecord {
    xcb_window_t id = XCB_WINDOW_NONE;
    /// The child of the root that holds it: the window manager's frame, or itself.
    xcb_window_t frame = XCB_WINDOW_NONE;

    /// Position in its parent, border excluded; where the parent itself lies in `frame`, if it is another.
    Point position;
    Point parentInFrame;
    int width = 0;
    int height = 0;
    int border = 0;
    bool isMapped = false;
    std::optional<Insets> frameExtents;
    /// What a client that decorates itself draws around its visible frame: shadows.
    std::optional<Insets> shadows;

    WindowFacts facts;
    std::string netName;
    std::string legacyName;

    /// Of the process that made the window; negative where it can't be known, then the same for one client's windows.
    pid_t pid = 0;
    std::optional<pid_t> serverPid;
    std::optional<pid_t> declaredPid;
    std::string machine;

    std::optional<Strut> strut;
    std::optional<Strut> partialStrut;
    /// Whether it has been the active window since it began to want attention. Many programs never take that back.
    bool wasLookedAt = false;
    bool takesFocus = true;
    bool hasDeleteProtocol = false;

    /// Another one after each change of anything above; no two windows ever have the same.
    std::uint64_t revision = 0;
    /// Grows from window to window in the order in which they appeared.
    std::uint64_t appearance = 0;
    /// Its number among the windows that there are: a small one, which goes to another when it has gone.
    std::size_t slot = 0;

    bool operator==(const WindowRecord&) const = default;
    const std::string& title() const { return netName.empty() ? legacyName : netName; }
};

}
