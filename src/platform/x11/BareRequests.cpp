#include "x11/WindowRequests.h"

namespace x11 {

void BareRequests::activate(const WindowRecord& window)
{
    raise(window);
    if (window.takesFocus)
        xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_POINTER_ROOT, window.id, XCB_CURRENT_TIME);
}

void BareRequests::raise(const WindowRecord& window)
{
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, window.id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
}

void BareRequests::iconify(const WindowRecord& window)
{
    // The state on the window tells it from one that its program took away.
    setWmState(window, WmState::iconic);
    xcb_unmap_window(connection_, window.id);
}

void BareRequests::deiconify(const WindowRecord& window)
{
    setWmState(window, WmState::normal);
    xcb_map_window(connection_, window.id);
}

void BareRequests::close(const WindowRecord& window)
{
    const Atoms& atoms = connection_.atoms();
    if (window.hasDeleteProtocol)
        connection_.tellOwner(window.id, atoms.wmProtocols, { atoms.wmDeleteWindow, XCB_CURRENT_TIME });
    else
        xcb_kill_client(connection_, window.id);
}

void BareRequests::moveResize(const WindowRecord& window, std::optional<Point> corner, std::optional<Point> size)
{
    if (corner) {
        const std::int32_t values[] = { corner->x, corner->y };
        xcb_configure_window(connection_, window.id, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
    }
    if (size) {
        const std::int32_t values[] = { size->x, size->y };
        xcb_configure_window(connection_, window.id, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
    }
}

void BareRequests::setFullScreen(const WindowRecord&, bool)
{
    // There is nobody who would know the way back.
}

void BareRequests::setDesktop(const WindowRecord&, std::uint32_t) { }

void BareRequests::setWmState(const WindowRecord& window, WmState state) const
{
    const std::uint32_t value[] = { static_cast<std::uint32_t>(state), XCB_WINDOW_NONE };
    const xcb_atom_t property = connection_.atoms().wmState;
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window.id, property, property, 32, 2, value);
}

}
