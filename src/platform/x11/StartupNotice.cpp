#include "x11/StartupNotice.h"

#include "x11/Reply.h"

#include <xcb/xcb.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

namespace x11 {
namespace {

class Sender {
public:
    Sender();

    bool isConnected() const { return xcb_connection_has_error(connection_.get()) == 0; }
    int screen() const { return screen_; }
    /// The server's, in milliseconds.
    xcb_timestamp_t now() const;
    void send(const std::string& message) const;

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    xcb_atom_t atom(std::string_view name) const;

    int screen_ = 0;
    std::unique_ptr<xcb_connection_t, Disconnect> connection_ { xcb_connect(nullptr, &screen_) };
    xcb_window_t root_ = XCB_WINDOW_NONE;
    /// Stands for one message while its parts arrive.
    xcb_window_t window_ = XCB_WINDOW_NONE;
};

Sender::Sender()
{
    if (!isConnected())
        return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
    for (int i = 0; i < screen_ && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    root_ = screens.data->root;
    window_ = xcb_generate_id(connection_.get());
    const std::uint32_t values[] = { 1, XCB_EVENT_MASK_PROPERTY_CHANGE };
    xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, root_, -1, -1, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
}

xcb_timestamp_t Sender::now() const
{
    xcb_change_property(
        connection_.get(), XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    xcb_flush(connection_.get());
    while (const Reply<xcb_generic_event_t> event { xcb_wait_for_event(connection_.get()) })
        if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY)
            return reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
    return XCB_CURRENT_TIME;
}

xcb_atom_t Sender::atom(std::string_view name) const
{
    const auto cookie = xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_.get(), cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

/// In parts of 20 bytes, with the byte of zero that ends it.
void Sender::send(const std::string& message) const
{
    xcb_client_message_event_t part {};
    part.response_type = XCB_CLIENT_MESSAGE;
    part.format = 8;
    part.window = window_;
    part.type = atom("_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t more = atom("_NET_STARTUP_INFO");
    for (std::size_t from = 0; from <= message.size(); from += sizeof part.data) {
        const std::string_view bytes = std::string_view(message).substr(from, sizeof part.data);
        std::fill(std::begin(part.data.data8), std::end(part.data.data8), std::uint8_t(0));
        std::copy(bytes.begin(), bytes.end(), part.data.data8);
        xcb_send_event(
            connection_.get(), 0, root_, XCB_EVENT_MASK_PROPERTY_CHANGE, reinterpret_cast<const char*>(&part));
        part.type = more;
    }
    // The round trip has everything arrive before the connection closes.
    atom("_NET_STARTUP_INFO");
}

std::string field(std::string_view key, std::string_view value)
{
    if (value.empty())
        return {};
    std::string text = " " + std::string(key) + "=\"";
    for (const char c : value) {
        if (c == '"' || c == '\\')
            text += '\\';
        text += c;
    }
    return text + '"';
}

class StartupNotice final : public freedesktop::LaunchNotifier {
public:
    std::string begin(const Program& program) override;
    void cancel(const std::string& identifier) override;

private:
    int count_ = 0;
};

std::string StartupNotice::begin(const Program& program)
{
    const Sender sender;
    if (!sender.isConnected())
        return {};
    const std::string identifier = "vantry-" + std::to_string(getpid()) + '-' + std::to_string(++count_) + "_TIME"
        + std::to_string(sender.now());
    sender.send("new:" + field("ID", identifier) + field("NAME", program.name)
        + " SCREEN=" + std::to_string(sender.screen()) + field("BIN", program.executable) + field("ICON", program.icon)
        + field("WMCLASS", program.wmClass));
    return identifier;
}

void StartupNotice::cancel(const std::string& identifier)
{
    const Sender sender;
    if (sender.isConnected())
        sender.send("remove:" + field("ID", identifier));
}

}

freedesktop::LaunchNotifier& startupNotice()
{
    static StartupNotice notice;
    return notice;
}

}
