#include "x11/WindowPixels.h"

#include <xcb/composite.h>

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace x11 {
namespace {

using Clock = std::chrono::steady_clock;

/// A program that has nothing more to draw for so long has drawn what was covered.
constexpr auto quiet = std::chrono::milliseconds(40);
/// One that goes on, such as a player, is captured as it then is.
constexpr auto patience = std::chrono::milliseconds(200);

template <class T>
bool succeeds(xcb_connection_t* connection, T request)
{
    return !Reply<xcb_generic_error_t>(xcb_request_check(connection, request));
}

Rect outer(const xcb_get_geometry_reply_t& geometry)
{
    const int borders = 2 * geometry.border_width;
    return { geometry.x, geometry.y, geometry.width + borders, geometry.height + borders };
}

}

WindowPixels::WindowPixels(Connection& connection)
    : connection_(connection)
    , scaler_(connection)
    , hasComposite_(connection.extension(xcb_composite_id) != nullptr)
{
    // The server answers to an extension's requests only after it was told the version.
    if (hasComposite_)
        xcb_discard_reply(connection, xcb_composite_query_version(connection, 0, 4).sequence);
    if (const auto* damage = connection.extension(xcb_damage_id)) {
        xcb_discard_reply(connection, xcb_damage_query_version(connection, 1, 1).sequence);
        damageEvent_ = damage->first_event;
    }
}

void WindowPixels::prepare(const std::vector<CaptureJob>& jobs)
{
    if (!hasComposite_)
        return;
    for (const CaptureJob& job : jobs) {
        if (!hasPixmap(job.frame) && isViewable(job.frame))
            redirect(job.frame);
    }
    if (!watches_.empty())
        awaitDrawing();
}

bool WindowPixels::hasPixmap(xcb_window_t frame)
{
    const auto pixmap = xcb_generate_id(connection_);
    const auto request = xcb_composite_name_window_pixmap_checked(connection_, frame, pixmap);
    if (!succeeds(connection_, request))
        return false;
    xcb_free_pixmap(connection_, pixmap);
    return true;
}

bool WindowPixels::isViewable(xcb_window_t frame)
{
    const Reply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, frame), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// Whether the screen lacks a part of the window's pixels. Shapes aren't looked at: a window that is covered by the
/// bounds of another alone is waited for in vain, and no harm done.
bool WindowPixels::isCovered(xcb_window_t frame)
{
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, connection_.root()), nullptr));
    if (!tree)
        return true;
    const auto* children = xcb_query_tree_children(tree.get());
    const auto* end = children + xcb_query_tree_children_length(tree.get());
    const std::vector<xcb_window_t> candidates(std::find(children, end, frame), end);

    struct Asked {
        xcb_get_geometry_cookie_t geometry;
        xcb_get_window_attributes_cookie_t attributes;
    };
    std::vector<Asked> asked;
    for (const xcb_window_t window : candidates)
        asked.push_back({ xcb_get_geometry(connection_, window), xcb_get_window_attributes(connection_, window) });

    Rect own;
    bool isCovered = candidates.empty();
    for (std::size_t index = 0; index < asked.size(); ++index) {
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection_, asked[index].geometry, nullptr));
        const Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection_, asked[index].attributes, nullptr));
        if (!geometry || !attributes)
            continue;
        const Rect rect = outer(*geometry);
        if (index == 0)
            own = rect;
        else if (attributes->map_state == XCB_MAP_STATE_VIEWABLE && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT)
            isCovered |= overlapArea(rect, own) > 0;
    }
    const xcb_screen_t& screen = connection_.screen();
    return isCovered || !contains({ 0, 0, screen.width_in_pixels, screen.height_in_pixels }, own);
}

void WindowPixels::redirect(xcb_window_t frame)
{
    if (damageEvent_ && isCovered(frame)) {
        watches_.push_back(xcb_generate_id(connection_));
        xcb_damage_create(connection_, watches_.back(), frame, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    }
    xcb_composite_redirect_window(connection_, frame, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    redirected_.push_back(frame);
}

void WindowPixels::awaitDrawing()
{
    xcb_flush(connection_);
    const auto end = Clock::now() + patience;
    auto settled = Clock::now() + quiet;
    while (!connection_.isLost()) {
        if (takeDamage())
            settled = Clock::now() + quiet;
        const auto rest
            = std::chrono::duration_cast<std::chrono::milliseconds>(std::min(settled, end) - Clock::now()).count();
        if (rest <= 0)
            return;
        pollfd socket { xcb_get_file_descriptor(connection_), POLLIN, 0 };
        poll(&socket, 1, static_cast<int>(rest));
    }
}

bool WindowPixels::takeDamage()
{
    bool isAny = false;
    while (const Event event = connection_.nextEvent()) {
        if ((event->response_type & ~0x80) != *damageEvent_)
            continue;
        const auto& damage = reinterpret_cast<const xcb_damage_notify_event_t&>(*event);
        xcb_damage_subtract(connection_, damage.damage, XCB_NONE, XCB_NONE);
        isAny = true;
    }
    xcb_flush(connection_);
    return isAny;
}

PixelsResult WindowPixels::read(const CaptureJob& job)
{
    if (!hasComposite_)
        return { .argb = {}, .error = "the X server has no Composite extension" };
    const auto pixmap = xcb_generate_id(connection_);
    const auto naming = xcb_composite_name_window_pixmap_checked(connection_, job.frame, pixmap);
    const auto sizing = xcb_get_geometry(connection_, job.frame);
    const auto looking = xcb_get_window_attributes(connection_, job.frame);
    const bool isNamed = succeeds(connection_, naming);
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(connection_, sizing, nullptr));
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection_, looking, nullptr));
    if (connection_.isLost())
        return { .argb = {}, .error = "the X server has gone" };
    if (!isNamed || !geometry || !attributes)
        return { .argb = {}, .error = "the X server keeps no pixels of the window" };

    const Rect whole = outer(*geometry);
    const Rect part = shrunk({ 0, 0, whole.width, whole.height }, job.margins);
    PixelsResult result { .argb = {}, .error = "nothing of the window is to be seen" };
    if (part.width > 0 && part.height > 0)
        result = scaler_.scaled(pixmap, attributes->visual, part, job.width, job.height);
    xcb_free_pixmap(connection_, pixmap);
    return result;
}

void WindowPixels::finish()
{
    for (const xcb_damage_damage_t watch : std::exchange(watches_, {}))
        xcb_damage_destroy(connection_, watch);
    for (const xcb_window_t frame : std::exchange(redirected_, {}))
        xcb_composite_unredirect_window(connection_, frame, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    xcb_flush(connection_);
    // What went wrong with windows that have died comes as events.
    while (connection_.nextEvent()) { }
}

}
