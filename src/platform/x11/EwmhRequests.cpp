#include "x11/WindowRequests.h"

namespace x11 {
namespace {

/// Requests come from a pager: window managers then do what the user asked for, and don't guard the focus.
constexpr std::uint32_t fromPager = 2;

}

void EwmhRequests::activate(const WindowRecord& window)
{
    if (comingForward_.isOf(window.id, state_))
        return;
    comingForward_.note(window.id, state_);
    // Some window managers would bring the window here; what was asked for is to go to it.
    const std::uint32_t desktop = state_.desktopOf(window);
    if (state_.desktopCount > 0 && desktop != allDesktops && desktop != state_.currentDesktop)
        connection_.tellManager(
            connection_.root(), connection_.atoms().netCurrentDesktop, { desktop, XCB_CURRENT_TIME });
    connection_.tellManager(
        window.id, connection_.atoms().netActiveWindow, { fromPager, XCB_CURRENT_TIME, XCB_WINDOW_NONE });
}

void EwmhRequests::raise(const WindowRecord& window)
{
    if (comingForward_.isOf(window.id, state_))
        return;
    if (state_.supported.contains(connection_.atoms().netRestackWindow)) {
        connection_.tellManager(
            window.id, connection_.atoms().netRestackWindow, { fromPager, XCB_WINDOW_NONE, XCB_STACK_MODE_ABOVE });
        return;
    }
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, window.id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
}

void EwmhRequests::iconify(const WindowRecord& window)
{
    comingForward_.forget();
    connection_.tellManager(
        window.id, connection_.atoms().wmChangeState, { static_cast<std::uint32_t>(WmState::iconic) });
}

void EwmhRequests::deiconify(const WindowRecord& window)
{
    comingForward_.forget();
    if (!window.isMapped) {
        xcb_map_window(connection_, window.id);
        return;
    }
    // Mapping a mapped window is no request at all. Some window managers leave iconified windows mapped, and one that
    // has only just marked it may not have come to unmapping it.
    connection_.tellManager(
        window.id, connection_.atoms().netActiveWindow, { fromPager, XCB_CURRENT_TIME, XCB_WINDOW_NONE });
}

void EwmhRequests::close(const WindowRecord& window)
{
    connection_.tellManager(window.id, connection_.atoms().netCloseWindow, { XCB_CURRENT_TIME, fromPager });
}

void EwmhRequests::moveResize(const WindowRecord& window, std::optional<Point> corner, std::optional<Point> size)
{
    // A maximised window keeps its place until it no longer is.
    if (window.facts.states.maximized)
        changeStates(
            window, false, connection_.atoms().netWmStateMaximizedVert, connection_.atoms().netWmStateMaximizedHorz);

    const std::uint32_t gravity = XCB_GRAVITY_NORTH_WEST; // The position is that of the outer corner.
    const std::uint32_t parts = (corner ? 0x300U : 0U) | (size ? 0xC00U : 0U);
    connection_.tellManager(window.id, connection_.atoms().netMoveresizeWindow,
        { gravity | parts | fromPager << 12, static_cast<std::uint32_t>(corner.value_or(Point {}).x),
            static_cast<std::uint32_t>(corner.value_or(Point {}).y),
            static_cast<std::uint32_t>(size.value_or(Point {}).x),
            static_cast<std::uint32_t>(size.value_or(Point {}).y) });
}

void EwmhRequests::setFullScreen(const WindowRecord& window, bool isFullScreen)
{
    changeStates(window, isFullScreen, connection_.atoms().netWmStateFullscreen, XCB_ATOM_NONE);
}

void EwmhRequests::setDesktop(const WindowRecord& window, std::uint32_t desktop)
{
    connection_.tellManager(window.id, connection_.atoms().netWmDesktop, { desktop, fromPager });
}

void EwmhRequests::changeStates(const WindowRecord& window, bool add, xcb_atom_t first, xcb_atom_t second) const
{
    connection_.tellManager(window.id, connection_.atoms().netWmState, { add ? 1U : 0U, first, second, fromPager });
}

}
