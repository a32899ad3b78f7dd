// A program with windows, for tests. It makes one for each line "X Y WIDTH HEIGHT" on its input, and answers its
// number; all else is done to them from outside. A window asked to close does so, and the program ends with its last
// one, or with its input. Started with a class, a place and a size it shows a window there, and takes no input.

#include <xcb/xcb.h>

#include <poll.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace {

class Client {
public:
    Client()
    {
        if (xcb_connection_has_error(connection_))
            std::exit(1);
        // The server gives the numbers of a client that has gone to the next one. Window managers that are still busy
        // with the windows of the one would take those of the other for them.
        for (int skipped = getpid() % 10007; skipped > 0; --skipped)
            xcb_generate_id(connection_);
    }

    void show(const std::string& name, int x, int y, int width, int height)
    {
        const xcb_window_t window = create(x, y, width, height);
        const std::string classes = name + '\0' + name + '\0';
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
            static_cast<std::uint32_t>(classes.size()), classes.data());
        xcb_map_window(connection_, window);
        input_ = -1;
    }

    [[noreturn]] void run()
    {
        pollfd sources[] = { { input_, POLLIN, 0 }, { xcb_get_file_descriptor(connection_), POLLIN, 0 } };
        for (;;) {
            takeEvents();
            poll(sources, 2, -1);
            if (sources[1].revents & (POLLHUP | POLLERR))
                std::exit(1);
            if (sources[0].revents != 0)
                takeInput();
        }
    }

private:
    void takeInput()
    {
        char bytes[256];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0)
            std::exit(0);
        std::istringstream lines(std::string(bytes, static_cast<std::size_t>(count)));
        for (int x, y, width, height; lines >> x >> y >> width >> height;)
            std::cout << create(x, y, width, height) << std::endl;
    }

    xcb_window_t create(int x, int y, int width, int height)
    {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        const xcb_window_t window = xcb_generate_id(connection_);
        const std::uint32_t values[] = { screen->white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY };
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen->root, static_cast<std::int16_t>(x),
            static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
        // A reply means that the server has done all that came before.
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        ++windowCount_;
        return window;
    }

    void takeEvents()
    {
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
            const int type = event->response_type & 0x7F;
            // The only messages that come to this client itself are requests to close.
            if (type == XCB_CLIENT_MESSAGE)
                xcb_destroy_window(connection_, reinterpret_cast<xcb_client_message_event_t*>(event)->window);
            if (type == XCB_DESTROY_NOTIFY && --windowCount_ == 0)
                std::exit(0);
            std::free(event);
        }
        xcb_flush(connection_);
    }

    xcb_connection_t* connection_ = xcb_connect(nullptr, nullptr);
    int windowCount_ = 0;
    int input_ = STDIN_FILENO;
};

}

int main(int argc, char** argv)
{
    Client client;
    if (argc == 6)
        client.show(argv[1], std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]), std::atoi(argv[5]));
    client.run();
}
