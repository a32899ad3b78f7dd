#include "contract/X11DesktopUnderTest.h"

#include "base/RunLoop.h"
#include "host/Displays.h"
#include "host/Windows.h"
#include "x11/X11Desktop.h"

#include <QCoreApplication>
#include <QProcess>
#include <QWidget>
#include <QWindow>

#include <xcb/xtest.h>

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace {

/// How long a desktop may take to follow, in seconds.
constexpr double patience = 5;

const bool hasHome = [] {
    const std::string& home = temporaryHome();
    setenv("HOME", home.c_str(), 1);
    for (const auto& [variable, folder] :
        { std::pair("CONFIG_HOME", "/config"), { "DATA_HOME", "/data" }, { "DATA_DIRS", "/shared" } })
        setenv((std::string("XDG_") + variable).c_str(), (home + folder).c_str(), 1);
    writeAtHome("open", "echo \"$1\" >> '" + home + "/opened'\n");
    writeAtHome("data/applications/test-files.desktop",
        "[Desktop Entry]\nType=Application\nName=Test Files\nStartupWMClass=testfiles\nMimeType=inode/directory;\n"
        "Exec=sh "
            + home + "/open %u\n");
    writeAtHome("config/mimeapps.list", "[Default Applications]\ninode/directory=test-files.desktop\n");
    std::atexit([] { std::filesystem::remove_all(temporaryHome()); });
    return true;
}();

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

std::string description(const CGRect& frame)
{
    const auto text = [](double value) { return std::to_string(static_cast<int>(value)) + ' '; };
    return text(frame.x) + text(frame.y) + text(frame.width) + text(frame.height);
}

}

const std::string& temporaryHome()
{
    static const std::string path = [] {
        char pattern[] = "/tmp/vantry-home-XXXXXX";
        return std::string(mkdtemp(pattern));
    }();
    return path;
}

void writeAtHome(const std::string& name, const std::string& text)
{
    const std::filesystem::path file = temporaryHome() + '/' + name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

std::string contentsOf(const std::string& path)
{
    std::ifstream file(path);
    return { std::istreambuf_iterator<char>(file), {} };
}

X11DesktopUnderTest::X11DesktopUnderTest()
    : connection_(xcb_connect(nullptr, nullptr))
    , screen_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data)
{
    haveTwoSpaces();
    switchToSpace(0);
    std::string reason;
    desktop_ = x11::openX11Desktop(reason);
    if (!desktop_)
        throw std::runtime_error(reason);
}

X11DesktopUnderTest::~X11DesktopUnderTest()
{
    while (!programs_.empty())
        endProgram(programs_.begin()->first);
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
    auto program = std::make_unique<QProcess>();
    program->setObjectName(name);
    program->start(WINDOW_CLIENT, {});
    if (!program->waitForStarted())
        throw std::runtime_error("can't start " WINDOW_CLIENT);
    const auto pid = static_cast<pid_t>(program->processId());
    programs_.emplace(pid, std::move(program));
    return pid;
}

void X11DesktopUnderTest::endProgram(pid_t pid)
{
    programs_.at(pid)->kill();
    programs_.at(pid)->waitForFinished();
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
    QProcess& program = *programs_.at(pid);
    const std::string place = description(frame);
    program.write((place + '\n').c_str());
    while (!program.canReadLine() && program.waitForReadyRead()) { }
    const auto window = static_cast<xcb_window_t>(program.readLine().toULong());
    const std::string name = program.objectName().toStdString();
    setProperty(window, "WM_CLASS STRING " + name + '\0' + name + '\0');
    setProperty(window, "WM_PROTOCOLS ATOM WM_DELETE_WINDOW");
    setProperty(window, "_NET_WM_PID CARDINAL " + std::to_string(pid));
    // Where and how large the user wants it.
    setProperty(window, "WM_NORMAL_HINTS WM_SIZE_HINTS 3 " + place + " 0 0 0 0 0 0 0 0 0 0 0 0 0");
    const std::uint32_t keys = XCB_EVENT_MASK_KEY_PRESS;
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &keys);
    opened_.push_back(window);
    return window;
}

std::uint32_t X11DesktopUnderTest::openWindow(pid_t pid, const std::string& title, const CGRect& frame)
{
    const std::uint32_t window = createWindow(pid, frame);
    setTitle(window, title);
    show(window);
    // A window manager focuses a new window in its own time; what the test does next is to come after that.
    settle([&] { return activeWindow() == window; }, 0.5);
    return window;
}

void X11DesktopUnderTest::show(xcb_window_t window)
{
    xcb_map_window(connection_, window);
    sync();
}

void X11DesktopUnderTest::raise(xcb_window_t window)
{
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    sync();
}

void X11DesktopUnderTest::closeWindow(std::uint32_t window)
{
    xcb_destroy_window(connection_, window);
    sync();
}

void X11DesktopUnderTest::setProperty(xcb_window_t window, const std::string& description)
{
    std::istringstream words(description);
    std::string name;
    std::string type;
    words >> name >> type >> std::ws;
    const bool isText = type.ends_with("STRING") || (type != "ATOM" && !std::isdigit(words.peek()));
    std::string text;
    std::vector<std::uint32_t> values;
    if (isText)
        std::getline(words, text);
    else
        for (std::string word; words >> word;)
            values.push_back(type == "ATOM" ? atom(word) : static_cast<std::uint32_t>(std::stoll(word)));
    const void* data = isText ? static_cast<const void*>(text.data()) : values.data();
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(name), atom(type), isText ? 8 : 32,
        static_cast<std::uint32_t>(isText ? text.size() : values.size()), data);
    sync();
}

void X11DesktopUnderTest::setTitle(std::uint32_t window, const std::string& title)
{
    setProperty(window, "_NET_WM_NAME UTF8_STRING " + title);
}

void X11DesktopUnderTest::minimise(std::uint32_t window)
{
    constexpr std::uint32_t iconic = 3;
    tellManager(window, "WM_CHANGE_STATE", { iconic });
}

void X11DesktopUnderTest::addState(std::uint32_t window, const std::string& state)
{
    constexpr std::uint32_t add = 1;
    constexpr std::uint32_t fromApplication = 1;
    tellManager(window, "_NET_WM_STATE", { add, atom(state), 0, fromApplication });
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
    const auto managed = numbers(root(), "_NET_CLIENT_LIST");
    return std::ranges::any_of(opened_, [&](xcb_window_t window) {
        return std::ranges::find(managed, window) != managed.end() || desktop_->windows().find(window);
    });
}

xcb_window_t X11DesktopUnderTest::activeWindow()
{
    const auto active = numbers(root(), "_NET_ACTIVE_WINDOW");
    return active.empty() ? xcb_window_t(XCB_WINDOW_NONE) : active.front();
}

std::vector<std::uint32_t> X11DesktopUnderTest::numbers(xcb_window_t window, const std::string& property)
{
    const auto reply = ask(xcb_get_property_reply, xcb_get_property, 0, window, atom(property), XCB_ATOM_ANY, 0, 1000);
    if (!reply)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return { first, first + xcb_get_property_value_length(reply.get()) / 4 };
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
    for (const xcb_keycode_t code : codes)
        fakeInput(XCB_KEY_PRESS, code);
    for (const xcb_keycode_t code : codes)
        fakeInput(XCB_KEY_RELEASE, code);
}

std::size_t X11DesktopUnderTest::pressesSeen(std::uint32_t window, std::uint16_t key)
{
    sync();
    while (const x11::Reply<xcb_generic_event_t> event { xcb_poll_for_event(connection_) })
        if ((event->response_type & 0x7F) == XCB_KEY_PRESS) {
            const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(*event);
            ++presses_[{ press.event, press.detail }];
        }
    return presses_[{ window, serverCode(key) }];
}

bool X11DesktopUnderTest::shows(const QWidget& panel)
{
    const QWindow* window = panel.windowHandle();
    return window && window->isExposed();
}

void X11DesktopUnderTest::movePointer(CGPoint point)
{
    const double height = desktop_->displays().all().front().frame.height;
    fakeInput(XCB_MOTION_NOTIFY, 0, static_cast<int>(point.x), static_cast<int>(height - point.y - 1));
}

void X11DesktopUnderTest::click(CGPoint point)
{
    movePointer(point);
    fakeInput(XCB_BUTTON_PRESS, 1);
    fakeInput(XCB_BUTTON_RELEASE, 1);
}

void X11DesktopUnderTest::fakeInput(std::uint8_t type, std::uint8_t detail, int x, int y)
{
    xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, root(), static_cast<std::int16_t>(x),
        static_cast<std::int16_t>(y), 0);
    xcb_flush(connection_);
}

void X11DesktopUnderTest::haveTwoSpaces()
{
    const auto count = [this] { return numbers(root(), "_NET_NUMBER_OF_DESKTOPS"); };
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
    return ask(xcb_intern_atom_reply, xcb_intern_atom, 0, static_cast<std::uint16_t>(name.size()), name.data())->atom;
}

/// The server takes connections in any order; what others ask for next is to come after what was asked here.
void X11DesktopUnderTest::sync()
{
    ask(xcb_get_input_focus_reply, xcb_get_input_focus);
}

void X11DesktopUnderTest::tellManager(
    xcb_window_t window, const std::string& type, const std::vector<std::uint32_t>& data)
{
    xcb_client_message_event_t message {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(type);
    std::ranges::copy(data, message.data.data32);
    xcb_send_event(connection_, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char*>(&message));
    sync();
}
