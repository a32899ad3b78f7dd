#pragma once

#include "x11/Geometry.h"

#include <xcb/xcb.h>

#include <list>
#include <optional>
#include <ranges>
#include <unordered_map>

namespace x11 {

/// A child of the root window: a window manager's frame, or a window that has none.
struct RootChild {
    xcb_window_t id = XCB_WINDOW_NONE;
    /// Border included.
    Rect outer;
    int border = 0;
    bool isMapped = false;
    /// Whether the window manager leaves it alone: menus, tooltips.
    bool isOverrideRedirect = false;
};

/// The children of the root window from bottom to top, kept current by the root's events. Each event costs the same,
/// however many they are.
class RootChildren {
public:
    RootChildren() = default;
    RootChildren(const RootChildren&) = delete;
    RootChildren& operator=(const RootChildren&) = delete;

    using List = std::list<RootChild>;
    const List& bottomToTop() const { return children_; }
    const RootChild* find(xcb_window_t window) const;
    /// Those in front of the window, from bottom to top; none where it isn't among them.
    std::ranges::subrange<List::const_iterator> above(xcb_window_t window) const;

    /// Puts a window on top.
    void add(const RootChild& child);
    void remove(xcb_window_t window);
    /// `inner` leaves out the border.
    void place(xcb_window_t window, const Rect& inner, int border);
    /// Takes an event of the root's substructure; the child that it tells another place or size of.
    std::optional<xcb_window_t> handle(const xcb_generic_event_t& event, xcb_window_t root);

private:
    List::iterator at(xcb_window_t window);
    void restack(List::iterator child, xcb_window_t above);
    std::optional<xcb_window_t> configure(const xcb_configure_notify_event_t& event);
    void setMapped(xcb_window_t window, bool isMapped);

    List children_;
    std::unordered_map<xcb_window_t, List::iterator> places_;
};

}
