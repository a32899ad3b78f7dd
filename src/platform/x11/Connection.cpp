#include "x11/Connection.h"

#include <xcb/randr.h>
#include <xcb/res.h>

#include <cstdlib>

namespace x11 {
namespace {

const xcb_screen_t* screenAt(xcb_connection_t* connection, int number)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    return screens.data;
}

void send(xcb_connection_t* connection, xcb_window_t to, std::uint32_t mask, xcb_window_t about, xcb_atom_t type,
    const Connection::MessageData& data)
{
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(connection, 0, to, mask, reinterpret_cast<const char*>(&message));
}

}

std::unique_ptr<Connection> Connection::open(std::string& reason)
{
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        const char* display = std::getenv("DISPLAY");
        reason = std::string("no X server answers at DISPLAY \"") + (display ? display : "") + '"';
        return nullptr;
    }
    return std::unique_ptr<Connection>(new Connection(connection, screenNumber));
}

Connection::Connection(xcb_connection_t* connection, int screenNumber)
    : connection_(connection)
    , screenNumber_(screenNumber)
    , screen_(screenAt(connection, screenNumber))
{
    // Their presence is asked for along with the atoms, so that it is known when it is needed.
    xcb_prefetch_extension_data(connection, &xcb_randr_id);
    xcb_prefetch_extension_data(connection, &xcb_res_id);
    atoms_ = internAtoms(connection, screenNumber);
}

const xcb_query_extension_reply_t* Connection::extension(xcb_extension_t& extension) const
{
    const auto* data = xcb_get_extension_data(connection_.get(), &extension);
    return data && data->present ? data : nullptr;
}

Event Connection::nextEvent()
{
    Event event(xcb_poll_for_event(connection_.get()));
    while (event && event->response_type == 0)
        event.reset(xcb_poll_for_event(connection_.get()));
    return event;
}

void Connection::flush() const
{
    xcb_flush(connection_.get());
    if (onFlushed)
        onFlushed();
}

void Connection::tellManager(xcb_window_t window, xcb_atom_t type, const MessageData& data) const
{
    send(connection_.get(), root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, window,
        type, data);
}

void Connection::tellOwner(xcb_window_t window, xcb_atom_t type, const MessageData& data) const
{
    send(connection_.get(), window, XCB_EVENT_MASK_NO_EVENT, window, type, data);
}

}
