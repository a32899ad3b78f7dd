#include "x11/RootChildren.h"

#include <iterator>

namespace x11 {
namespace {

template <class Specific>
const Specific& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const Specific&>(event);
}

Rect outerRect(int x, int y, int width, int height, int border)
{
    return { x, y, width + 2 * border, height + 2 * border };
}

}

const RootChild* RootChildren::find(xcb_window_t window) const
{
    const auto found = places_.find(window);
    return found == places_.end() ? nullptr : &*found->second;
}

std::ranges::subrange<RootChildren::List::const_iterator> RootChildren::above(xcb_window_t window) const
{
    const auto found = places_.find(window);
    return { found == places_.end() ? children_.end() : std::next(found->second), children_.end() };
}

RootChildren::List::iterator RootChildren::at(xcb_window_t window)
{
    const auto found = places_.find(window);
    return found == places_.end() ? children_.end() : found->second;
}

void RootChildren::add(const RootChild& child)
{
    remove(child.id);
    places_.emplace(child.id, children_.insert(children_.end(), child));
}

void RootChildren::remove(xcb_window_t window)
{
    if (const auto place = places_.extract(window); !place.empty())
        children_.erase(place.mapped());
}

void RootChildren::place(xcb_window_t window, const Rect& inner, int border)
{
    const auto child = at(window);
    if (child == children_.end())
        return;
    child->outer = outerRect(inner.x, inner.y, inner.width, inner.height, border);
    child->border = border;
}

/// In front of `above`, or to the bottom where that is none.
void RootChildren::restack(List::iterator child, xcb_window_t above)
{
    if (child->id == above)
        return;
    const auto below = at(above);
    children_.splice(below == children_.end() ? children_.begin() : std::next(below), children_, child);
}

std::optional<xcb_window_t> RootChildren::configure(const xcb_configure_notify_event_t& event)
{
    const auto child = at(event.window);
    if (child == children_.end())
        return std::nullopt;
    const RootChild before = *child;
    place(event.window, { event.x, event.y, event.width, event.height }, event.border_width);
    child->isOverrideRedirect = event.override_redirect != 0;
    restack(child, event.above_sibling);
    const bool isMoved = child->outer != before.outer || child->border != before.border;
    return isMoved ? std::optional(event.window) : std::nullopt;
}

void RootChildren::setMapped(xcb_window_t window, bool isMapped)
{
    if (const auto child = at(window); child != children_.end())
        child->isMapped = isMapped;
}

std::optional<xcb_window_t> RootChildren::handle(const xcb_generic_event_t& event, xcb_window_t root)
{
    switch (event.response_type & ~0x80) {
    case XCB_CREATE_NOTIFY: {
        const auto& create = as<xcb_create_notify_event_t>(event);
        if (create.parent == root)
            add({ create.window, outerRect(create.x, create.y, create.width, create.height, create.border_width),
                create.border_width, false, create.override_redirect != 0 });
        break;
    }
    case XCB_DESTROY_NOTIFY:
        if (as<xcb_destroy_notify_event_t>(event).event == root)
            remove(as<xcb_destroy_notify_event_t>(event).window);
        break;
    case XCB_MAP_NOTIFY:
        if (as<xcb_map_notify_event_t>(event).event == root)
            setMapped(as<xcb_map_notify_event_t>(event).window, true);
        break;
    case XCB_UNMAP_NOTIFY:
        if (as<xcb_unmap_notify_event_t>(event).event == root)
            setMapped(as<xcb_unmap_notify_event_t>(event).window, false);
        break;
    case XCB_CONFIGURE_NOTIFY:
        if (as<xcb_configure_notify_event_t>(event).event == root)
            return configure(as<xcb_configure_notify_event_t>(event));
        break;
    case XCB_GRAVITY_NOTIFY: {
        const auto& gravity = as<xcb_gravity_notify_event_t>(event);
        const auto child = at(gravity.window);
        if (gravity.event != root || child == children_.end())
            break;
        child->outer.x = gravity.x;
        child->outer.y = gravity.y;
        return gravity.window;
    }
    case XCB_CIRCULATE_NOTIFY: {
        const auto& circulate = as<xcb_circulate_notify_event_t>(event);
        const auto child = at(circulate.window);
        if (circulate.event == root && child != children_.end())
            restack(child, circulate.place == XCB_PLACE_ON_TOP ? children_.back().id : xcb_window_t(XCB_WINDOW_NONE));
        break;
    }
    case XCB_REPARENT_NOTIFY: {
        const auto& reparent = as<xcb_reparent_notify_event_t>(event);
        if (reparent.event != root)
            break;
        if (reparent.parent != root)
            remove(reparent.window);
        else
            // Its size isn't told here; the mirror asks for it.
            add({ reparent.window, { reparent.x, reparent.y, 0, 0 }, 0, false, reparent.override_redirect != 0 });
        break;
    }
    default:
        break;
    }
    return std::nullopt;
}

}
