// A program with windows, for tests: what it does is told to it on its input, a line each, and it answers each with a
// line when the server has carried it out.
//
//   create X Y WIDTH HEIGHT             makes a window and answers its number
//   map WINDOW                          shows it
//   raise WINDOW                        puts it in front
//   destroy WINDOW
//   iconify WINDOW
//   fullscreen WINDOW
//   text WINDOW PROPERTY TYPE VALUE     a property of bytes; the value is the rest of the line
//   numbers WINDOW PROPERTY TYPE N...   a property of 32-bit numbers
//   atoms WINDOW PROPERTY NAME...
//   attention WINDOW                    asks that the user look at it
//   presses CODE                        answers how often that key went down
//
// A window asked to close does so, and the program ends with its last one, or with its input. Started with a place and
// a size behind its name it shows a window there, and takes no input.

#include <xcb/xcb.h>

#include <poll.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

class Client {
public:
    explicit Client(std::string name)
        : name_(std::move(name))
        , connection_(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(connection_))
            std::exit(1);
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        // The server gives the numbers of a client that has gone to the next one. Window managers that are still busy
        // with the windows of the one would take those of the other for them.
        for (int skipped = getpid() % 10007; skipped > 0; --skipped)
            xcb_generate_id(connection_);
    }

    void show(const std::string& frame)
    {
        std::istringstream line(frame);
        xcb_map_window(connection_, create(line));
        xcb_flush(connection_);
        hasInput_ = false;
    }

    [[noreturn]] void run()
    {
        pollfd sources[] = { { STDIN_FILENO, POLLIN, 0 }, { xcb_get_file_descriptor(connection_), POLLIN, 0 } };
        for (;;) {
            takeEvents();
            sources[0].fd = hasInput_ ? STDIN_FILENO : -1;
            poll(sources, 2, -1);
            if (sources[1].revents & (POLLHUP | POLLERR))
                std::exit(1);
            if (hasInput_ && sources[0].revents != 0)
                takeInput();
        }
    }

private:
    void takeInput()
    {
        char bytes[4096];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0)
            std::exit(0);
        input_.append(bytes, static_cast<std::size_t>(count));
        for (std::size_t end; (end = input_.find('\n')) != input_.npos;) {
            std::istringstream line(input_.substr(0, end));
            input_.erase(0, end + 1);
            obey(line);
        }
    }

    void obey(std::istringstream& line)
    {
        std::string verb;
        line >> verb;
        std::uint32_t answer = 0;
        if (verb == "create") {
            answer = create(line);
        } else if (verb == "presses") {
            takeEvents();
            line >> answer;
            answer = presses_[answer];
        } else {
            xcb_window_t window = 0;
            line >> window;
            change(verb, window, line);
        }
        // A reply means that the server has done all that came before.
        std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        std::cout << answer << std::endl;
    }

    void change(const std::string& verb, xcb_window_t window, std::istringstream& line)
    {
        constexpr std::uint32_t iconic = 3;
        constexpr std::uint32_t add = 1;
        constexpr std::uint32_t fromApplication = 1;
        if (verb == "map")
            xcb_map_window(connection_, window);
        else if (verb == "raise")
            raise(window);
        else if (verb == "destroy")
            destroy(window);
        else if (verb == "iconify")
            tellManager(window, "WM_CHANGE_STATE", { iconic });
        else if (verb == "fullscreen")
            tellManager(window, "_NET_WM_STATE", { add, atom("_NET_WM_STATE_FULLSCREEN"), 0, fromApplication });
        else if (verb == "attention")
            tellManager(window, "_NET_WM_STATE", { add, atom("_NET_WM_STATE_DEMANDS_ATTENTION"), 0, fromApplication });
        else
            setProperty(verb, window, line);
    }

    void setProperty(const std::string& verb, xcb_window_t window, std::istringstream& line)
    {
        std::string property;
        std::string type = "ATOM";
        line >> property;
        if (verb != "atoms")
            line >> type;
        if (verb == "text") {
            std::string value;
            std::getline(line >> std::ws, value);
            setBytes(window, property, type, value);
            return;
        }
        std::vector<std::uint32_t> values;
        for (std::string word; line >> word;)
            values.push_back(verb == "atoms" ? atom(word) : static_cast<std::uint32_t>(std::stoul(word)));
        setNumbers(window, property, type, values);
    }

    xcb_atom_t atom(const std::string& name)
    {
        auto* reply = xcb_intern_atom_reply(connection_,
            xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
        const xcb_atom_t result = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
        std::free(reply);
        return result;
    }

    std::uint32_t create(std::istringstream& line)
    {
        int x = 0;
        int y = 0;
        unsigned width = 0;
        unsigned height = 0;
        line >> x >> y >> width >> height;
        const xcb_window_t window = xcb_generate_id(connection_);
        const std::uint32_t values[] = { screen_->white_pixel, XCB_EVENT_MASK_KEY_PRESS };
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, static_cast<std::int16_t>(x),
            static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
        const std::string classes = name_ + '\0' + name_ + '\0';
        setBytes(window, "WM_CLASS", "STRING", classes);
        setNumbers(window, "WM_PROTOCOLS", "ATOM", { atom("WM_DELETE_WINDOW") });
        setNumbers(window, "_NET_WM_PID", "CARDINAL", { static_cast<std::uint32_t>(getpid()) });
        const auto place = [](int value) { return static_cast<std::uint32_t>(value); };
        constexpr std::uint32_t userPositionAndSize = 3;
        setNumbers(window, "WM_NORMAL_HINTS", "WM_SIZE_HINTS",
            { userPositionAndSize, place(x), place(y), width, height, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0 });
        windows_.insert(window);
        return window;
    }

    void raise(xcb_window_t window)
    {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }

    void destroy(xcb_window_t window)
    {
        xcb_destroy_window(connection_, window);
        windows_.erase(window);
    }

    void setBytes(xcb_window_t window, const std::string& property, const std::string& type, const std::string& value)
    {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 8,
            static_cast<std::uint32_t>(value.size()), value.data());
    }

    void setNumbers(xcb_window_t window, const std::string& property, const std::string& type,
        const std::vector<std::uint32_t>& values)
    {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 32,
            static_cast<std::uint32_t>(values.size()), values.data());
    }

    void tellManager(xcb_window_t window, const std::string& type, const std::vector<std::uint32_t>& data)
    {
        xcb_client_message_event_t message {};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = atom(type);
        std::copy(data.begin(), data.end(), message.data.data32);
        xcb_send_event(connection_, 0, screen_->root,
            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
            reinterpret_cast<const char*>(&message));
    }

    /// Keys, and messages: the only ones that come to this client itself are requests to close.
    void takeEvents()
    {
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE)
                destroy(reinterpret_cast<xcb_client_message_event_t*>(event)->window);
            if ((event->response_type & 0x7F) == XCB_KEY_PRESS)
                ++presses_[reinterpret_cast<const xcb_key_press_event_t*>(event)->detail];
            std::free(event);
            xcb_flush(connection_);
            if (windows_.empty())
                std::exit(0);
        }
    }

    std::string name_;
    bool hasInput_ = true;
    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    std::set<xcb_window_t> windows_;
    /// By the key's code.
    std::map<std::uint32_t, std::uint32_t> presses_;
    std::string input_;
};

}

int main(int argc, char** argv)
{
    Client client(argc > 1 ? argv[1] : "client");
    std::string frame;
    for (int each = 2; each < argc; ++each)
        frame += std::string(argv[each]) + ' ';
    if (!frame.empty())
        client.show(frame);
    client.run();
}
