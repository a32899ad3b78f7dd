#include "contract/X11DesktopUnderTest.h"

#include "base/RunLoop.h"
#include "host/Displays.h"
#include "host/Windows.h"
#include "x11/X11Desktop.h"

#include <QCoreApplication>
#include <QWidget>
#include <QWindow>

#include <xcb/xtest.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace {

/// How long a desktop may take to follow, in seconds.
constexpr double patience = 5;

class TemporaryHome {
public:
    TemporaryHome()
    {
        char pattern[] = "/tmp/vantry-home-XXXXXX";
        path_ = mkdtemp(pattern);
        setenv("HOME", path_.c_str(), 1);
        setenv("XDG_CONFIG_HOME", (path_ + "/config").c_str(), 1);
        setenv("XDG_DATA_HOME", (path_ + "/data").c_str(), 1);
        setenv("XDG_DATA_DIRS", (path_ + "/shared").c_str(), 1);
        write("open", "echo \"$1\" >> '" + path_ + "/opened'\n");
        write("data/applications/test-files.desktop",
            "[Desktop Entry]\nType=Application\nName=Test Files\nStartupWMClass=testfiles\nMimeType=inode/directory;\n"
            "Exec=sh "
                + path_ + "/open %u\n");
        write("config/mimeapps.list", "[Default Applications]\ninode/directory=test-files.desktop\n");
    }
    ~TemporaryHome()
    {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    const std::string& path() const { return path_; }
    void write(const std::string& name, const std::string& text) const
    {
        const std::filesystem::path file = path_ + '/' + name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

private:
    std::string path_;
};

const TemporaryHome home;

const bool isRegistered = [] {
    // What the suite asks for takes a window manager.
    const char* manager = std::getenv("VANTRY_WM");
    if (std::getenv("DISPLAY") && (!manager || std::string_view(manager) != "none"))
        desktopKinds().push_back({ "x11", [] { return std::make_unique<X11DesktopUnderTest>(); } });
    return true;
}();

/// Of an ordinary keyboard.
xcb_keycode_t serverCode(std::uint16_t key)
{
    static const std::map<std::uint16_t, xcb_keycode_t> codes { { 18, 10 }, { 11, 56 }, { 49, 65 } };
    return codes.at(key);
}

std::string numbers(const CGRect& frame)
{
    const auto text = [](double value) { return std::to_string(static_cast<int>(value)) + ' '; };
    return text(frame.x) + text(frame.y) + text(frame.width) + text(frame.height);
}

}

const std::string& temporaryHome()
{
    return home.path();
}

void writeAtHome(const std::string& name, const std::string& text)
{
    home.write(name, text);
}

ClientProgram::ClientProgram(const std::string& name)
{
    int toClient[2];
    int fromClient[2];
    if (pipe(toClient) != 0 || pipe(fromClient) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, toClient[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, fromClient[1], STDOUT_FILENO);
    for (const int end : { toClient[0], toClient[1], fromClient[0], fromClient[1] })
        posix_spawn_file_actions_addclose(&files, end);

    std::string program = WINDOW_CLIENT;
    std::string argument = name;
    char* arguments[] = { program.data(), argument.data(), nullptr };
    if (posix_spawn(&pid_, program.c_str(), &files, nullptr, arguments, environ) != 0)
        throw std::runtime_error("can't start " + program);
    posix_spawn_file_actions_destroy(&files);
    close(toClient[0]);
    close(fromClient[1]);
    input_ = fdopen(toClient[1], "w");
    output_ = fdopen(fromClient[0], "r");
}

ClientProgram::~ClientProgram()
{
    std::fclose(input_);
    std::fclose(output_);
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
}

std::uint32_t ClientProgram::tell(const std::string& command)
{
    std::fprintf(input_, "%s\n", command.c_str());
    std::fflush(input_);
    std::uint32_t answer = 0;
    return std::fscanf(output_, "%u", &answer) == 1 ? answer : 0;
}

X11DesktopUnderTest::X11DesktopUnderTest()
    : connection_(xcb_connect(nullptr, nullptr))
    , screen_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data)
{
    signal(SIGPIPE, SIG_IGN);
    haveTwoSpaces();
    switchToSpace(0);
    std::string reason;
    desktop_ = x11::openX11Desktop(reason);
    if (!desktop_)
        throw std::runtime_error(reason);
}

X11DesktopUnderTest::~X11DesktopUnderTest()
{
    std::vector<pid_t> pids;
    for (const auto& [pid, program] : programs_)
        pids.push_back(pid);
    for (const pid_t pid : pids)
        endProgram(pid);
    // The next test is not to meet this one's windows.
    settle([&] { return !isAnyListed(); });
    desktop_.reset();
    xcb_disconnect(connection_);
}

bool X11DesktopUnderTest::settle(const std::function<bool()>& condition)
{
    return settle(condition, patience);
}

bool X11DesktopUnderTest::settle(const std::function<bool()>& condition, double seconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        QCoreApplication::processEvents();
        RunLoop::main().runDue();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

pid_t X11DesktopUnderTest::startProgram(const std::string& name)
{
    auto program = std::make_unique<ClientProgram>(name);
    const pid_t pid = program->pid();
    programs_.emplace(pid, std::move(program));
    return pid;
}

void X11DesktopUnderTest::endProgram(pid_t pid)
{
    programs_.erase(pid);
}

/// By way of a shell, or all that the tests start would be this application.
std::string X11DesktopUnderTest::install(const std::string& name)
{
    writeAtHome("start", "exec \"$@\"\n");
    writeAtHome("data/applications/" + name + ".desktop",
        "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=sh " + temporaryHome() + "/start " WINDOW_CLIENT " "
            + name + " 200 150 230 170\n");
    return "/Applications/" + name + ".app";
}

std::uint32_t X11DesktopUnderTest::createWindow(pid_t pid, const CGRect& frame)
{
    const std::uint32_t window = program(pid).tell("create " + numbers(frame));
    owners_[window] = pid;
    return window;
}

std::uint32_t X11DesktopUnderTest::openWindow(pid_t pid, const std::string& title, const CGRect& frame)
{
    const std::uint32_t window = createWindow(pid, frame);
    setTitle(window, title);
    tell(window, "map");
    // A window manager focuses a new window in its own time; what the test does next is to come after that.
    settle([&] { return activeWindow() == window; }, 0.5);
    return window;
}

void X11DesktopUnderTest::tell(std::uint32_t window, const std::string& verb, const std::string& rest)
{
    const auto owner = programs_.find(owners_.at(window));
    if (owner != programs_.end())
        owner->second->tell(verb + ' ' + std::to_string(window) + ' ' + rest);
}

void X11DesktopUnderTest::closeWindow(std::uint32_t window)
{
    tell(window, "destroy");
}

void X11DesktopUnderTest::setTitle(std::uint32_t window, const std::string& title)
{
    tell(window, "text", "_NET_WM_NAME UTF8_STRING " + title);
}

void X11DesktopUnderTest::minimise(std::uint32_t window)
{
    tell(window, "iconify");
}

void X11DesktopUnderTest::enterFullScreen(std::uint32_t window)
{
    tell(window, "fullscreen");
}

void X11DesktopUnderTest::focus(std::uint32_t window)
{
    const auto isActive = [&] { return activeWindow() == window; };
    // A window manager that is about to focus a window that just came forgets this; a user would click again.
    for (int tries = 0; tries < 10 && !isActive(); ++tries) {
        bringForward(window);
        settle(isActive, 0.5);
    }
}

void X11DesktopUnderTest::bringForward(std::uint32_t window)
{
    constexpr std::uint32_t fromPager = 2;
    tellManager(window, "_NET_ACTIVE_WINDOW", { fromPager, XCB_CURRENT_TIME, 0 });
}

/// Whether the window manager or the desktop still lists a window of the programs.
bool X11DesktopUnderTest::isAnyListed()
{
    const auto managed = rootNumbers("_NET_CLIENT_LIST");
    return std::ranges::any_of(owners_, [&](const auto& owner) {
        return std::ranges::find(managed, owner.first) != managed.end() || desktop_->windows().find(owner.first);
    });
}

xcb_window_t X11DesktopUnderTest::activeWindow()
{
    const auto active = rootNumbers("_NET_ACTIVE_WINDOW");
    return active.empty() ? xcb_window_t(XCB_WINDOW_NONE) : active.front();
}

std::vector<std::uint32_t> X11DesktopUnderTest::rootNumbers(const std::string& property)
{
    auto* reply = xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, root(), atom(property), XCB_ATOM_ANY, 0, 1000), nullptr);
    std::vector<std::uint32_t> numbers;
    if (reply) {
        const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
        numbers.assign(values, values + reply->value_len);
    }
    std::free(reply);
    return numbers;
}

void X11DesktopUnderTest::typeKey(std::uint16_t key, std::uint64_t flags)
{
    std::vector<xcb_keycode_t> codes;
    for (const auto& [flag, code] :
        { std::pair<std::uint64_t, xcb_keycode_t> { 0x40000, 37 }, { 0x80000, 64 }, { 0x100000, 133 } }) {
        if ((flags & flag) != 0)
            codes.push_back(code);
    }
    codes.push_back(serverCode(key));
    const auto fake = [&](std::uint8_t type, xcb_keycode_t code) {
        xcb_test_fake_input(connection_, type, code, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    };
    for (const xcb_keycode_t code : codes)
        fake(XCB_KEY_PRESS, code);
    for (const xcb_keycode_t code : codes)
        fake(XCB_KEY_RELEASE, code);
    xcb_flush(connection_);
}

std::size_t X11DesktopUnderTest::pressesSeen(std::uint32_t window, std::uint16_t key)
{
    return program(owners_.at(window)).tell("presses " + std::to_string(serverCode(key)));
}

bool X11DesktopUnderTest::shows(const QWidget& panel)
{
    const QWindow* window = panel.windowHandle();
    return window && window->isExposed();
}

void X11DesktopUnderTest::movePointer(CGPoint point)
{
    const double height = desktop_->displays().all().front().frame.height;
    xcb_warp_pointer(connection_, XCB_WINDOW_NONE, root(), 0, 0, 0, 0, static_cast<std::int16_t>(point.x),
        static_cast<std::int16_t>(height - point.y - 1));
    xcb_flush(connection_);
}

void X11DesktopUnderTest::click(CGPoint point)
{
    movePointer(point);
    for (const int type : { XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE })
        xcb_test_fake_input(
            connection_, static_cast<std::uint8_t>(type), 1, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    xcb_flush(connection_);
}

void X11DesktopUnderTest::haveTwoSpaces()
{
    const auto count = [this] { return rootNumbers("_NET_NUMBER_OF_DESKTOPS"); };
    if (count() == std::vector<std::uint32_t> { 1 })
        tellManager(root(), "_NET_NUMBER_OF_DESKTOPS", { 2 });
    settle([&] { return count() != std::vector<std::uint32_t> { 1 }; });
}

void X11DesktopUnderTest::switchToSpace(std::size_t index)
{
    tellManager(root(), "_NET_CURRENT_DESKTOP", { static_cast<std::uint32_t>(index), XCB_CURRENT_TIME });
}

xcb_atom_t X11DesktopUnderTest::atom(const std::string& name)
{
    auto* reply = xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
    const xcb_atom_t result = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(reply);
    return result;
}

void X11DesktopUnderTest::tellManager(
    xcb_window_t window, const std::string& type, const std::vector<std::uint32_t>& data)
{
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(type);
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(connection_, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char*>(&message));
    // The server takes connections in any order; what the desktop asks for next is to come after this.
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}
