#include "x11/Instance.h"

#include "base/Executable.h"

#include <unistd.h>

namespace x11 {
namespace {

xcb_atom_t selectionName(Connection& connection)
{
    const std::string name = "_VANTRY_S" + std::to_string(connection.screenNumber());
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, cookie, nullptr));
    return atom ? atom->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t ownerOf(Connection& connection, xcb_atom_t selection)
{
    const auto cookie = xcb_get_selection_owner(connection, selection);
    const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return owner ? owner->owner : xcb_window_t(XCB_WINDOW_NONE);
}

/// A window that is never seen, and says whose it is.
xcb_window_t makeWindow(Connection& connection)
{
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t overrideRedirect = 1;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, connection.root(), -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
    const auto pid = static_cast<std::uint32_t>(getpid());
    xcb_change_property(
        connection, XCB_PROP_MODE_REPLACE, window, connection.atoms().netWmPid, XCB_ATOM_CARDINAL, 32, 1, &pid);
    return window;
}

/// Absent also when it has gone and the server hasn't noticed: who is killed and started again must not wait for that.
std::optional<pid_t> processOf(Connection& connection, xcb_window_t window)
{
    const auto cookie = xcb_get_property(connection, 0, window, connection.atoms().netWmPid, XCB_ATOM_CARDINAL, 0, 1);
    const Reply<xcb_get_property_reply_t> property(xcb_get_property_reply(connection, cookie, nullptr));
    if (!property || property->value_len != 1)
        return std::nullopt;
    const auto pid = static_cast<pid_t>(*static_cast<const std::uint32_t*>(xcb_get_property_value(property.get())));
    return executableOf(pid).empty() ? std::nullopt : std::optional(pid);
}

/// Keeps every other client waiting while it lives.
class ServerGrab {
public:
    explicit ServerGrab(Connection& connection)
        : connection_(connection)
    {
        xcb_grab_server(connection_);
    }
    ~ServerGrab()
    {
        xcb_ungrab_server(connection_);
        xcb_flush(connection_);
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

private:
    Connection& connection_;
};

}

/// Two that start at once must not both find that there is none.
Instance::Instance(Connection& connection)
{
    const xcb_atom_t selection = selectionName(connection);
    const xcb_window_t window = makeWindow(connection);
    const ServerGrab grab(connection);
    const xcb_window_t owner = ownerOf(connection, selection);
    if (owner != XCB_WINDOW_NONE)
        other_ = processOf(connection, owner);
    if (!other_)
        xcb_set_selection_owner(connection, window, selection, XCB_CURRENT_TIME);
}

}
