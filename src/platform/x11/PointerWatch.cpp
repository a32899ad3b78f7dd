#include "x11/PointerWatch.h"

#include <xcb/xinput.h>

namespace x11 {
namespace {

constexpr std::uint16_t anyButton = XCB_BUTTON_MASK_1 | XCB_BUTTON_MASK_2 | XCB_BUTTON_MASK_3;

}

PointerWatch::PointerWatch(Connection& connection, const Monitors& monitors, std::function<void()> drainSoon)
    : connection_(connection)
    , monitors_(monitors)
    , drainSoon_(std::move(drainSoon))
{
}

std::optional<PointerWatch::Place> PointerWatch::ask()
{
    const Reply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection_, xcb_query_pointer(connection_, connection_.root()), nullptr));
    if (!reply)
        return std::nullopt;
    return Place { { reply->root_x, reply->root_y }, reply->child, (reply->mask & anyButton) != 0 };
}

std::optional<CGPoint> PointerWatch::location()
{
    if (reported_)
        return monitors_.points().screenSpace(*reported_);
    const auto place = ask();
    drainSoon_();
    return place ? std::optional(monitors_.points().screenSpace(place->point)) : std::nullopt;
}

bool PointerWatch::hasXInput()
{
    if (opcode_)
        return *opcode_ != 0;
    opcode_ = 0;
    if (const auto* extension = connection_.extension(xcb_input_id)) {
        const Reply<xcb_input_xi_query_version_reply_t> version(
            xcb_input_xi_query_version_reply(connection_, xcb_input_xi_query_version(connection_, 2, 2), nullptr));
        if (version && version->major_version >= 2)
            opcode_ = extension->major_opcode;
    }
    drainSoon_();
    return *opcode_ != 0;
}

bool PointerWatch::watch(bool on)
{
    if (!hasXInput())
        return false;
    isWatching_ = on;
    select(on ? XCB_INPUT_XI_EVENT_MASK_RAW_MOTION : 0);
    return true;
}

void PointerWatch::select(std::uint32_t events)
{
    struct {
        xcb_input_event_mask_t head { XCB_INPUT_DEVICE_ALL_MASTER, 1 };
        std::uint32_t mask = 0;
    } selection;
    selection.mask = events;
    xcb_input_xi_select_events(connection_, connection_.root(), 1, &selection.head);
    connection_.flush();
}

void PointerWatch::handle(const xcb_generic_event_t& event)
{
    if ((event.response_type & ~0x80) != XCB_GE_GENERIC || !opcode_)
        return;
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    hasMoved_ |= generic.extension == *opcode_ && generic.event_type == XCB_INPUT_RAW_MOTION;
}

void PointerWatch::report(const std::function<bool(const Place&)>& isOfConcern)
{
    // Movements that were on their way when watching ended are told to nobody.
    if (!std::exchange(hasMoved_, false) || !isWatching_ || !onMove)
        return;
    const auto place = ask();
    drainSoon_();
    if (!place || !isOfConcern(*place))
        return;
    // Whoever is told asks where the pointer is.
    reported_ = place->point;
    onMove(place->isButtonDown);
    reported_.reset();
}

}
