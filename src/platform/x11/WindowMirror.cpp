#include "x11/WindowMirror.h"

#include "x11/Selections.h"
#include "x11/WindowProperties.h"

#include <unistd.h>

#include <algorithm>

namespace x11 {
namespace {

template <class Specific>
const Specific& as(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const Specific&>(event);
}

std::string hostName()
{
    char name[256] = {};
    gethostname(name, sizeof name - 1);
    return name;
}

}

WindowMirror::WindowMirror(Connection& connection)
    : connection_(connection)
    , host_(hostName())
{
}

// What events tell; what is asked of the server is in WindowMirrorReading.cpp.

void WindowMirror::handle(const xcb_generic_event_t& event)
{
    const std::lock_guard lock(mutex_);
    ++eventCount_;
    if (const auto moved = state_.rootChildren.handle(event, connection_.root()))
        touchClientsIn(*moved);
    if (tellsOfSelection(connection_, event, connection_.atoms().compositor))
        staleRoot_ |= staleCompositor;

    switch (event.response_type & ~0x80) {
    case XCB_PROPERTY_NOTIFY: {
        const auto& property = as<xcb_property_notify_event_t>(event);
        if (property.window == connection_.root())
            handleRootProperty(property.atom);
        else
            handleClientProperty(property.window, property.atom);
        break;
    }
    case XCB_MAP_NOTIFY:
    case XCB_UNMAP_NOTIFY: {
        const bool isMapped = (event.response_type & ~0x80) == XCB_MAP_NOTIFY;
        // Both events have the window at the same place.
        const auto& change = as<xcb_map_notify_event_t>(event);
        handleMapped(change.event, change.window, isMapped);
        break;
    }
    case XCB_REPARENT_NOTIFY:
        handleReparent(as<xcb_reparent_notify_event_t>(event));
        break;
    case XCB_CONFIGURE_NOTIFY:
        handleConfigure(as<xcb_configure_notify_event_t>(event));
        break;
    case XCB_DESTROY_NOTIFY:
        handleDestroy(as<xcb_destroy_notify_event_t>(event).window);
        break;
    case XCB_FOCUS_IN: {
        const auto& focus = as<xcb_focus_in_event_t>(event);
        if (state_.isManaged() || focus.detail == XCB_NOTIFY_DETAIL_POINTER)
            break;
        announcedActive_ = focus.event;
        setActive(announcedActive_);
        break;
    }
    default:
        break;
    }
}

void WindowMirror::handleRootProperty(xcb_atom_t atom)
{
    const Atoms& atoms = connection_.atoms();
    if (atom == atoms.netClientList || atom == atoms.netClientListStacking)
        staleRoot_ |= staleClients;
    else if (atom == atoms.netActiveWindow)
        staleRoot_ |= staleActive;
    else if (atom == atoms.netCurrentDesktop || atom == atoms.netNumberOfDesktops)
        staleRoot_ |= staleDesktops;
    else if (atom == atoms.netSupportingWmCheck || atom == atoms.netSupported)
        staleRoot_ |= staleManager;
}

void WindowMirror::handleClientProperty(xcb_window_t window, xcb_atom_t atom)
{
    if (!state_.windows.contains(window))
        return;
    const auto table = windowProperties();
    const auto property = std::ranges::find(
        table, atom, [this](const WindowProperty& entry) { return connection_.atoms().*entry.name; });
    if (property == table.end())
        return;
    auto& stale = property->isTitle ? staleTitles_ : staleProperties_;
    stale[window] |= PropertyBits(1) << (property - table.begin());
}

void WindowMirror::handleConfigure(const xcb_configure_notify_event_t& event)
{
    // Of the two kinds that a client gets, the window manager's synthetic ones are in the root's coordinates.
    const bool isSynthetic = (event.response_type & 0x80) != 0;
    const auto found = state_.windows.find(event.window);
    if (event.event == connection_.root() || isSynthetic || found == state_.windows.end())
        return;
    WindowRecord& window = found->second;
    window.position = { event.x, event.y };
    window.width = event.width;
    window.height = event.height;
    window.border = event.border_width;
    touch(window);
}

void WindowMirror::handleMapped(xcb_window_t reporter, xcb_window_t window, bool isMapped)
{
    const auto known = state_.windows.find(window);
    if (reporter == window && known != state_.windows.end()) {
        known->second.isMapped = isMapped;
        touch(known->second);
        changes_.listing |= !state_.isManaged();
    }
    isWantedStale_ |= !state_.isManaged() && reporter == connection_.root();
}

void WindowMirror::handleReparent(const xcb_reparent_notify_event_t& event)
{
    if (event.event == connection_.root() && event.parent == connection_.root())
        staleChildren_.push_back(event.window);
    if (state_.windows.contains(event.window))
        staleFrames_.insert(event.window);
}

void WindowMirror::handleDestroy(xcb_window_t window)
{
    if (window == state_.manager)
        staleRoot_ |= staleManager;
    forget(window);
}

void WindowMirror::setActive(xcb_window_t window)
{
    const xcb_window_t active = state_.windows.contains(window) ? window : xcb_window_t(XCB_WINDOW_NONE);
    if (active == state_.active)
        return;
    state_.active = active;
    ++state_.activeChanges;
    changes_.active = true;
    if (active == XCB_WINDOW_NONE)
        return;
    std::erase(state_.activations, active);
    state_.activations.push_back(active);
    lookAt(state_.windows.at(active));
}

void WindowMirror::lookAt(WindowRecord& window)
{
    if (!window.facts.wantsAttention() || std::exchange(window.wasLookedAt, true))
        return;
    touch(window);
    changes_.listing = true;
}

void WindowMirror::forget(xcb_window_t window)
{
    const auto found = state_.windows.find(window);
    if (found == state_.windows.end())
        return;
    ++lastRevision_;
    changes_.listing = true;
    changes_.struts |= found->second.strut || found->second.partialStrut;
    setFrame(found->second, XCB_WINDOW_NONE);
    disown(found->second);
    std::erase(state_.appearance, &found->second);
    freeSlots_.push_back(found->second.slot);
    state_.windows.erase(found);
    std::erase(state_.activations, window);
    staleProperties_.erase(window);
    staleTitles_.erase(window);
    staleFrames_.erase(window);
    if (state_.active == window)
        setActive(XCB_WINDOW_NONE);
}

void WindowMirror::setPoints(const Points& points)
{
    const std::lock_guard lock(mutex_);
    if (points == state_.points)
        return;
    state_.points = points;
    for (auto& [id, window] : state_.windows)
        touch(window);
}

void WindowMirror::setFrame(WindowRecord& window, xcb_window_t frame)
{
    const auto [first, end] = state_.clients.equal_range(window.frame);
    const auto place = std::find_if(first, end, [&](const auto& each) { return each.second == window.id; });
    if (place != end)
        state_.clients.erase(place);
    if (frame != XCB_WINDOW_NONE)
        state_.clients.emplace(frame, window.id);
    window.frame = frame;
}

void WindowMirror::setOwner(WindowRecord& window, pid_t pid)
{
    const auto byAppearance = [](const WindowRecord* each) { return each->appearance; };
    auto& windows = state_.owned[pid];
    const auto place = std::ranges::lower_bound(windows, window.appearance, {}, byAppearance);
    if (place != windows.end() && *place == &window)
        return;
    windows.insert(place, &window);
    if (window.pid != pid)
        disown(window);
    window.pid = pid;
}

void WindowMirror::disown(const WindowRecord& window)
{
    const auto owner = state_.owned.find(window.pid);
    if (owner == state_.owned.end())
        return;
    std::erase(owner->second, &window);
    if (owner->second.empty())
        state_.owned.erase(owner);
}

void WindowMirror::touchClientsIn(xcb_window_t frame)
{
    const auto [first, end] = state_.clients.equal_range(frame);
    std::for_each(first, end, [this](const auto& each) { touch(state_.windows.at(each.second)); });
}

}
