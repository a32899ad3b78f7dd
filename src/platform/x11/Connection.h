#pragma once

#include "x11/Atoms.h"
#include "x11/Reply.h"

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace x11 {

using Event = Reply<xcb_generic_event_t>;

/// Our own connection to the X server, beside the toolkit's. Requests may be sent from any thread; events are taken on
/// the main one. Waiting for a reply can leave events behind in the connection's queue, where the socket doesn't tell
/// of them, so whoever waits on the main thread outside of event handling calls `X11Desktop`'s drain afterwards.
class Connection {
public:
    /// Null, with `reason` set, when no server can be reached.
    static std::unique_ptr<Connection> open(std::string& reason);

    xcb_connection_t* get() const { return connection_.get(); }
    operator xcb_connection_t*() const { return connection_.get(); }
    xcb_window_t root() const { return screen_->root; }
    const xcb_screen_t& screen() const { return *screen_; }
    int screenNumber() const { return screenNumber_; }
    const xcb_setup_t& setup() const { return *xcb_get_setup(connection_.get()); }
    const Atoms& atoms() const { return atoms_; }

    /// The present extension's data; null when the server lacks it.
    const xcb_query_extension_reply_t* extension(xcb_extension_t& extension) const;

    bool isLost() const { return xcb_connection_has_error(connection_.get()) != 0; }
    /// The next event that has come; null when there is none. Errors of requests whose window has died are left out.
    Event nextEvent();

    using MessageData = std::array<std::uint32_t, 5>;
    /// A request to the window manager about a window, sent through the root. Any thread.
    void tellManager(xcb_window_t window, xcb_atom_t type, const MessageData& data) const;
    /// A message to the owner of a window. Any thread.
    void tellOwner(xcb_window_t window, xcb_atom_t type, const MessageData& data) const;
    /// Sends what was asked for. Any thread.
    void flush() const;
    /// Called, on whatever thread, after requests were sent: sending can take in events too.
    std::function<void()> onFlushed;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    Connection(xcb_connection_t* connection, int screenNumber);

    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    int screenNumber_;
    const xcb_screen_t* screen_;
    Atoms atoms_;
};

}
