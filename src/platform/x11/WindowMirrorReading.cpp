#include "x11/WindowMirror.h"

#include "x11/Selections.h"
#include "x11/WindowProperties.h"

#include <xcb/res.h>

#include <algorithm>
#include <cstdio>
#include <span>

namespace x11 {
namespace {

/// Clients whose process nobody can name get numbers from here downwards.
constexpr pid_t firstNamelessPid = -2000;
constexpr std::uint32_t listLongs = 16384;
constexpr std::uint32_t mostDesktops = 256;

constexpr std::uint32_t rootEvents
    = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
constexpr std::uint32_t clientEvents
    = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE;

void select(xcb_connection_t* connection, xcb_window_t window, std::uint32_t events)
{
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &events);
}

struct Difference {
    std::vector<xcb_window_t> gone;
    /// All before this place are known; most from there on aren't.
    std::size_t firstNew = 0;
};

/// Mostly windows have joined at the end or left, and the others are listed as they were.
Difference compare(const std::vector<const WindowRecord*>& known, const std::vector<xcb_window_t>& listed)
{
    Difference result;
    for (const WindowRecord* window : known) {
        if (result.firstNew < listed.size() && listed[result.firstNew] == window->id)
            ++result.firstNew;
        else
            result.gone.push_back(window->id);
    }
    if (!result.gone.empty() && result.firstNew < listed.size()) {
        const std::unordered_set<xcb_window_t> others(
            listed.begin() + static_cast<std::ptrdiff_t>(result.firstNew), listed.end());
        std::erase_if(result.gone, [&](xcb_window_t window) { return others.contains(window); });
    }
    return result;
}

std::vector<xcb_window_t> windowsIn(const Property& property)
{
    const auto windows = property.numbers(XCB_ATOM_WINDOW);
    return { windows.begin(), windows.end() };
}

}

// What is asked of the server; what its events tell is in WindowMirror.cpp.

void WindowMirror::start()
{
    select(connection_, connection_.root(), rootEvents);
    watchSelections(connection_);
    staleRoot_ = staleAll;
}

bool WindowMirror::refresh()
{
    const std::lock_guard lock(mutex_);
    bool hasAsked = readManager();
    hasAsked |= readRoot();
    hasAsked |= readChildren();
    hasAsked |= readWindows();
    if (hasAsked)
        setActive(announcedActive_);
    return hasAsked;
}

void WindowMirror::refreshTitles()
{
    const std::lock_guard lock(mutex_);
    for (const auto& [window, which] : std::exchange(staleTitles_, {}))
        staleProperties_[window] |= which;
    readWindows();
}

bool WindowMirror::readManager()
{
    if ((staleRoot_ & staleManager) == 0)
        return false;
    staleRoot_ &= ~staleManager;
    const Atoms& atoms = connection_.atoms();
    Burst burst(connection_);

    xcb_window_t candidate = XCB_WINDOW_NONE;
    burst.property(connection_.root(), atoms.netSupportingWmCheck, 1,
        [&](const Property& check) { candidate = check.number(XCB_ATOM_WINDOW).value_or(XCB_WINDOW_NONE); });
    burst.property(connection_.root(), atoms.netSupported, listLongs, [&](const Property& names) {
        const auto all = names.numbers(XCB_ATOM_ATOM);
        state_.supported = { all.begin(), all.end() };
        state_.hasHiddenState = state_.supported.contains(atoms.netWmStateHidden);
    });
    burst.finish();

    // A window manager that died leaves its property on the root; one that lives has it on the window named there too.
    xcb_window_t manager = XCB_WINDOW_NONE;
    if (candidate != XCB_WINDOW_NONE) {
        select(connection_, candidate, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        burst.property(candidate, atoms.netSupportingWmCheck, 1, [&](const Property& check) {
            if (check.number(XCB_ATOM_WINDOW) == candidate)
                manager = candidate;
        });
        burst.finish();
    }
    if (manager != state_.manager)
        staleRoot_ |= staleAll & ~staleManager;
    state_.manager = manager;
    ++lastRevision_;
    if (manager == XCB_WINDOW_NONE && !std::exchange(wasWarned_, true))
        std::fputs(
            "vantry: no window manager that speaks EWMH: windows are found and moved as well as can be\n", stderr);
    return true;
}

bool WindowMirror::readRoot()
{
    if (staleRoot_ == 0)
        return false;
    using Ask = void (WindowMirror::*)(Burst&);
    static constexpr std::pair<RootStale, Ask> questions[] = {
        { staleClients, &WindowMirror::askClients },
        { staleDesktops, &WindowMirror::askDesktops },
        { staleActive, &WindowMirror::askActive },
        { staleCompositor, &WindowMirror::askCompositor },
        { staleTree, &WindowMirror::askTree },
    };
    Burst burst(connection_);
    for (const auto& [what, ask] : questions) {
        if ((staleRoot_ & what) != 0)
            (this->*ask)(burst);
    }
    staleRoot_ &= staleManager;
    burst.finish();
    return true;
}

void WindowMirror::askClients(Burst& burst)
{
    burst.property(connection_.root(), connection_.atoms().netClientList, listLongs,
        [this](const Property& list) { managedClients_ = windowsIn(list); });
    burst.property(connection_.root(), connection_.atoms().netClientListStacking, listLongs,
        [this](const Property& list) { state_.managedStacking = windowsIn(list); });
    isWantedStale_ = true;
}

void WindowMirror::askDesktops(Burst& burst)
{
    changes_.desktops = true;
    ++lastRevision_;
    burst.property(connection_.root(), connection_.atoms().netNumberOfDesktops, 1, [this](const Property& count) {
        state_.desktopCount
            = state_.isManaged() ? std::min(count.number(XCB_ATOM_CARDINAL).value_or(0), mostDesktops) : 0;
    });
    burst.property(connection_.root(), connection_.atoms().netCurrentDesktop, 1, [this](const Property& current) {
        state_.currentDesktop = state_.isManaged() ? current.number(XCB_ATOM_CARDINAL).value_or(0) : 0;
    });
}

void WindowMirror::askActive(Burst& burst)
{
    if (state_.isManaged()) {
        burst.property(connection_.root(), connection_.atoms().netActiveWindow, 1, [this](const Property& active) {
            announcedActive_ = active.number(XCB_ATOM_WINDOW).value_or(XCB_WINDOW_NONE);
        });
        return;
    }
    burst.ask(xcb_get_input_focus(connection_), xcb_get_input_focus_reply,
        [this](const xcb_get_input_focus_reply_t* focus) { announcedActive_ = focus ? focus->focus : 0; });
}

void WindowMirror::askCompositor(Burst& burst)
{
    burst.ask(xcb_get_selection_owner(connection_, connection_.atoms().compositor), xcb_get_selection_owner_reply,
        [this](const xcb_get_selection_owner_reply_t* selection) {
            state_.isComposited = selection && selection->owner != XCB_WINDOW_NONE;
        });
}

void WindowMirror::askTree(Burst& burst)
{
    burst.ask(xcb_query_tree(connection_, connection_.root()), xcb_query_tree_reply,
        [this](const xcb_query_tree_reply_t* tree) {
            if (tree)
                staleChildren_.assign(xcb_query_tree_children(tree),
                    xcb_query_tree_children(tree) + xcb_query_tree_children_length(tree));
        });
    isWantedStale_ = true;
}

bool WindowMirror::readChildren()
{
    if (staleChildren_.empty())
        return false;
    Burst burst(connection_);
    const auto children = std::exchange(staleChildren_, {});
    for (const xcb_window_t child : children)
        askChild(burst, child);
    burst.finish();
    for (const xcb_window_t child : children)
        touchClientsIn(child);
    return true;
}

void WindowMirror::askChild(Burst& burst, xcb_window_t child)
{
    const auto attributes = xcb_get_window_attributes(connection_, child);
    const auto geometry = xcb_get_geometry(connection_, child);
    burst.ask(
        attributes, xcb_get_window_attributes_reply, [this, child](const xcb_get_window_attributes_reply_t* answer) {
            if (!answer || answer->_class == XCB_WINDOW_CLASS_INPUT_ONLY)
                return state_.rootChildren.remove(child);
            state_.rootChildren.add(
                { child, {}, 0, answer->map_state != XCB_MAP_STATE_UNMAPPED, answer->override_redirect != 0 });
        });
    burst.ask(geometry, xcb_get_geometry_reply, [this, child](const xcb_get_geometry_reply_t* answer) {
        if (answer)
            state_.rootChildren.place(
                child, { answer->x, answer->y, answer->width, answer->height }, answer->border_width);
    });
}

bool WindowMirror::readWindows()
{
    Burst burst(connection_);
    if (std::exchange(isWantedStale_, false))
        followWanted(burst);
    if (staleProperties_.empty() && staleFrames_.empty())
        return false;
    for (const auto& [window, which] : std::exchange(staleTitles_, {}))
        staleProperties_[window] |= which;

    std::unordered_map<xcb_window_t, WindowRecord> before;
    for (const auto& [window, which] : std::exchange(staleProperties_, {})) {
        before.emplace(window, state_.windows.at(window));
        askProperties(burst, window, which);
    }
    burst.finish();
    findFrames();

    for (const auto& [id, old] : before) {
        const auto found = state_.windows.find(id);
        if (found == state_.windows.end())
            continue;
        WindowRecord& window = found->second;
        settlePid(window);
        window.wasLookedAt = window.facts.wantsAttention() && (window.wasLookedAt || id == state_.active);
        if (window != old)
            touch(window);
        changes_.listing |= window.facts != old.facts || window.pid != old.pid;
        changes_.struts |= window.strut != old.strut || window.partialStrut != old.partialStrut;
    }
    return true;
}

/// The windows that are to be known: those that the window manager lists, or else all that could be an application's.
std::vector<xcb_window_t> WindowMirror::wanted() const
{
    if (state_.isManaged())
        return managedClients_;
    std::vector<xcb_window_t> result;
    for (const RootChild& child : state_.rootChildren.bottomToTop()) {
        if (!child.isOverrideRedirect && (child.isMapped || state_.windows.contains(child.id)))
            result.push_back(child.id);
    }
    return result;
}

void WindowMirror::followWanted(Burst& burst)
{
    const auto windows = wanted();
    const auto [gone, firstNew] = compare(state_.appearance, windows);
    for (const xcb_window_t window : gone)
        forget(window);
    for (const xcb_window_t window : std::span(windows).subspan(firstNew)) {
        const auto [place, isNew] = state_.windows.try_emplace(window);
        if (!isNew)
            continue;
        place->second.id = window;
        place->second.appearance = ++lastAppearance_;
        place->second.slot = takeSlot();
        setFrame(place->second, window);
        state_.appearance.push_back(&place->second);
        staleProperties_[window] = ~PropertyBits(0);
        staleFrames_.insert(window);
        select(connection_, window, clientEvents);
        askPid(burst, window);
        askMapped(burst, window);
        changes_.listing = true;
    }
}

void WindowMirror::askPid(Burst& burst, xcb_window_t window)
{
    if (!connection_.extension(xcb_res_id))
        return;
    const xcb_res_client_id_spec_t spec { window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID };
    burst.ask(xcb_res_query_client_ids(connection_, 1, &spec), xcb_res_query_client_ids_reply,
        [this, window](const xcb_res_query_client_ids_reply_t* answer) {
            if (!answer)
                return;
            const auto values = xcb_res_query_client_ids_ids_iterator(answer);
            if (values.rem > 0 && xcb_res_client_id_value_value_length(values.data) > 0)
                state_.windows.at(window).serverPid = static_cast<pid_t>(*xcb_res_client_id_value_value(values.data));
        });
}

void WindowMirror::askMapped(Burst& burst, xcb_window_t window)
{
    burst.ask(xcb_get_window_attributes(connection_, window), xcb_get_window_attributes_reply,
        [this, window](const xcb_get_window_attributes_reply_t* answer) {
            state_.windows.at(window).isMapped = answer && answer->map_state != XCB_MAP_STATE_UNMAPPED;
        });
}

void WindowMirror::askProperties(Burst& burst, xcb_window_t window, PropertyBits which)
{
    const auto table = windowProperties();
    for (std::size_t i = 0; i < table.size(); ++i) {
        if ((which >> i & 1) == 0)
            continue;
        const WindowProperty& property = table[i];
        burst.property(window, connection_.atoms().*property.name, property.longs,
            [this, window, &property](
                const Property& value) { property.apply(state_.windows.at(window), value, connection_.atoms()); });
    }
}

/// Goes up from each window to the root, all of them a level at a time.
void WindowMirror::findFrames()
{
    std::unordered_map<xcb_window_t, xcb_window_t> climbers;
    for (const xcb_window_t window : std::exchange(staleFrames_, {})) {
        climbers[window] = window;
        state_.windows.at(window).parentInFrame = {};
        touch(state_.windows.at(window));
    }
    while (!climbers.empty()) {
        Burst burst(connection_);
        std::unordered_map<xcb_window_t, xcb_window_t> next;
        for (const auto& [window, reached] : climbers) {
            const auto tree = xcb_query_tree(connection_, reached);
            const auto geometry = xcb_get_geometry(connection_, reached);
            burst.ask(tree, xcb_query_tree_reply, [&, window, reached](const xcb_query_tree_reply_t* answer) {
                if (!answer)
                    return forget(window);
                if (answer->parent == connection_.root())
                    setFrame(state_.windows.at(window), reached);
                else
                    next[window] = answer->parent;
            });
            burst.ask(geometry, xcb_get_geometry_reply, [&, window, reached](const xcb_get_geometry_reply_t* answer) {
                const auto found = state_.windows.find(window);
                if (found == state_.windows.end())
                    return;
                if (!answer)
                    return forget(window);
                WindowRecord& record = found->second;
                const Point position { answer->x, answer->y };
                if (reached == window) {
                    record.position = position;
                    record.width = answer->width;
                    record.height = answer->height;
                    record.border = answer->border_width;
                } else if (next.contains(window)) {
                    record.parentInFrame.x += position.x + answer->border_width;
                    record.parentInFrame.y += position.y + answer->border_width;
                }
            });
        }
        burst.finish();
        std::erase_if(next, [this](const auto& climber) { return !state_.windows.contains(climber.first); });
        climbers = std::move(next);
    }
}

void WindowMirror::settlePid(WindowRecord& window)
{
    if (window.serverPid)
        setOwner(window, *window.serverPid);
    else if (window.declaredPid && window.machine == host_)
        setOwner(window, *window.declaredPid);
    else
        setOwner(window, namelessPid(window.id));
}

std::size_t WindowMirror::takeSlot()
{
    if (freeSlots_.empty())
        return state_.windows.size() - 1;
    const std::size_t slot = freeSlots_.back();
    freeSlots_.pop_back();
    return slot;
}

pid_t WindowMirror::namelessPid(xcb_window_t window)
{
    const std::uint32_t client = window & ~connection_.setup().resource_id_mask;
    const pid_t next = firstNamelessPid - static_cast<pid_t>(namelessPids_.size());
    return namelessPids_.try_emplace(client, next).first->second;
}

}
