#include "x11/Monitors.h"

#include "x11/MonitorIdentity.h"
#include "x11/Struts.h"

#include <xcb/randr.h>

#include <algorithm>

namespace x11 {
namespace {

constexpr std::uint32_t edidLongs = 32;

Insets larger(const Insets& a, const Insets& b)
{
    return { std::max(a.left, b.left), std::max(a.right, b.right), std::max(a.top, b.top),
        std::max(a.bottom, b.bottom) };
}

}

Monitors::Monitors(Connection& connection, WindowMirror& mirror)
    : connection_(connection)
    , mirror_(mirror)
{
}

void Monitors::start()
{
    if (!connection_.extension(xcb_randr_id))
        return;
    // The server counts a client as one that knows monitors by the version that it names.
    xcb_randr_query_version_unchecked(connection_, 1, 5);
    xcb_randr_select_input(connection_, connection_.root(),
        XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
}

void Monitors::handle(const xcb_generic_event_t& event)
{
    const int type = event.response_type & ~0x80;
    if (type == XCB_CONFIGURE_NOTIFY) {
        isStale_ |= reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == connection_.root();
        return;
    }
    if (const auto* randr = connection_.extension(xcb_randr_id))
        isStale_ |= type == randr->first_event || type == randr->first_event + XCB_RANDR_NOTIFY;
}

bool Monitors::refresh()
{
    if (!std::exchange(isStale_, false))
        return false;
    Burst burst(connection_);
    burst.ask(xcb_get_geometry(connection_, connection_.root()), xcb_get_geometry_reply,
        [this](const xcb_get_geometry_reply_t* geometry) {
            if (geometry)
                root_ = { 0, 0, geometry->width, geometry->height };
        });
    monitors_ = readMonitors(burst);
    if (monitors_.empty())
        monitors_ = { { "screen", {}, root_, true } };
    std::ranges::stable_partition(monitors_, &Monitor::isPrimary);
    tellPoints();
    return true;
}

void Monitors::setScale(double scale)
{
    scale_ = scale;
    if (!monitors_.empty())
        tellPoints();
}

void Monitors::tellPoints()
{
    mirror_.setPoints({ scale_, monitors_.front().frame });
}

std::vector<Monitor> Monitors::readMonitors(Burst& burst)
{
    struct Named {
        Monitor monitor;
        xcb_atom_t name;
        std::vector<xcb_randr_output_t> outputs;
    };
    std::vector<Named> found;
    if (connection_.extension(xcb_randr_id)) {
        burst.ask(xcb_randr_get_monitors(connection_, connection_.root(), 1), xcb_randr_get_monitors_reply,
            [&](const xcb_randr_get_monitors_reply_t* answer) {
                if (!answer)
                    return;
                for (auto each = xcb_randr_get_monitors_monitors_iterator(answer); each.rem > 0;
                     xcb_randr_monitor_info_next(&each)) {
                    const auto& info = *each.data;
                    const auto* outputs = xcb_randr_monitor_info_outputs(each.data);
                    const Rect frame { info.x, info.y, info.width, info.height };
                    // Two outputs that show the same are one display.
                    const bool isMirror
                        = std::ranges::any_of(found, [&](const Named& other) { return other.monitor.frame == frame; });
                    if (frame.width > 0 && frame.height > 0 && !isMirror)
                        found.push_back({ { {}, {}, frame, info.primary != 0 }, info.name,
                            { outputs, outputs + xcb_randr_monitor_info_outputs_length(each.data) } });
                }
            });
    }
    burst.finish();

    const auto edidName = xcb_intern_atom(connection_, 1, 4, "EDID");
    const Reply<xcb_intern_atom_reply_t> edid(xcb_intern_atom_reply(connection_, edidName, nullptr));
    std::vector<Monitor> result(found.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        result[i] = found[i].monitor;
        burst.ask(xcb_get_atom_name(connection_, found[i].name), xcb_get_atom_name_reply,
            [&, i](const xcb_get_atom_name_reply_t* name) {
                if (name)
                    result[i].name.assign(xcb_get_atom_name_name(name), xcb_get_atom_name_name(name) + name->name_len);
            });
        if (!edid || edid->atom == XCB_ATOM_NONE || found[i].outputs.empty())
            continue;
        burst.ask(xcb_randr_get_output_property(
                      connection_, found[i].outputs.front(), edid->atom, XCB_GET_PROPERTY_TYPE_ANY, 0, edidLongs, 0, 0),
            xcb_randr_get_output_property_reply, [&, i](const xcb_randr_get_output_property_reply_t* property) {
                if (property && property->format == 8)
                    result[i].edid.assign(reinterpret_cast<const char*>(xcb_randr_get_output_property_data(property)),
                        property->num_items);
            });
    }
    burst.finish();
    return result;
}

Rect Monitors::visible(const Monitor& monitor) const
{
    Insets insets;
    for (const WindowRecord* window : mirror_.state().byAppearance()) {
        const auto& strut = window->partialStrut ? window->partialStrut : window->strut;
        if (strut && !ownDocks_.contains(window->id))
            insets = larger(insets, takenFrom(monitor.frame, *strut, root_));
    }
    const Rect visible = shrunk(monitor.frame, insets);
    return visible.width > 0 && visible.height > 0 ? visible : monitor.frame;
}

bool Monitors::update()
{
    const auto numbers = monitorNumbers(monitors_);
    std::vector<host::Display> displays;
    for (std::size_t i = 0; i < monitors_.size(); ++i)
        displays.push_back({ numbers[i], monitorUuid(monitors_[i]), points().screenSpace(monitors_[i].frame),
            points().screenSpace(visible(monitors_[i])) });
    if (displays == displays_)
        return false;
    displays_ = std::move(displays);
    return true;
}

std::optional<std::size_t> Monitors::main()
{
    if (monitors_.empty())
        return std::nullopt;
    const DesktopState& state = mirror_.state();
    const WindowRecord* active = state.find(state.active);
    if (!active)
        return 0;
    const Rect window = state.outer(*active);
    const auto best = std::ranges::max_element(
        monitors_, {}, [&](const Monitor& monitor) { return overlapArea(monitor.frame, window); });
    return static_cast<std::size_t>(best - monitors_.begin());
}

}
