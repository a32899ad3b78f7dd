#pragma once

#include "contract/DesktopUnderTest.h"

#include "x11/Reply.h"

#include <xcb/xcb.h>

#include <map>
#include <type_traits>

class QProcess;

/// The X11 desktop on the server that DISPLAY names, under the window manager that runs there.
class X11DesktopUnderTest final : public DesktopUnderTest {
public:
    X11DesktopUnderTest();
    ~X11DesktopUnderTest() override;

    host::Desktop& desktop() override { return *desktop_; }
    bool settle(const std::function<bool()>& condition) override;

    pid_t startProgram(const std::string& name) override;
    void endProgram(pid_t pid) override;
    std::uint32_t openWindow(pid_t pid, const std::string& title, const CGRect& frame) override;
    void closeWindow(std::uint32_t window) override;
    std::string install(const std::string& name) override;
    void demandAttention(std::uint32_t window) override { addState(window, "_NET_WM_STATE_DEMANDS_ATTENTION"); }
    void setTitle(std::uint32_t window, const std::string& title) override;
    void minimise(std::uint32_t window) override;
    void focus(std::uint32_t window) override;
    void enterFullScreen(std::uint32_t window) override { addState(window, "_NET_WM_STATE_FULLSCREEN"); }
    void typeKey(std::uint16_t key, std::uint64_t flags) override;
    std::size_t pressesSeen(std::uint32_t window, std::uint16_t key) override;
    bool shows(const QWidget& panel) override;
    void movePointer(CGPoint point) override;
    void click(CGPoint point) override;
    void switchToSpace(std::size_t index) override;

    /// By the XTEST extension; where, on the root, matters to movements.
    void fakeInput(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);

    /// As a pager would, also a window that counts as active though it is iconified.
    void bringForward(std::uint32_t window);

    /// Makes a window that isn't shown yet.
    std::uint32_t createWindow(pid_t pid, const CGRect& frame);
    void show(xcb_window_t window);
    void raise(xcb_window_t window);
    /// "NAME TYPE VALUE...": names of atoms, numbers, or text where the type or the first letter says so.
    void setProperty(xcb_window_t window, const std::string& description);
    /// The numbers in a property.
    std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property);

    xcb_connection_t* connection() { return connection_; }
    xcb_window_t root() const { return screen_->root; }
    xcb_atom_t atom(const std::string& name);
    /// What the server answers; null where it can't. Afterwards it has done all that came before.
    template <class T, class Cookie, class... Arguments>
    x11::Reply<T> ask(T* (*reply)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
        Cookie (*request)(xcb_connection_t*, Arguments...), std::type_identity_t<Arguments>... arguments)
    {
        return x11::Reply<T>(reply(connection_, request(connection_, arguments...), nullptr));
    }

private:
    bool settle(const std::function<bool()>& condition, double seconds);
    bool isAnyListed();
    void haveTwoSpaces();
    xcb_window_t activeWindow();
    void sync();
    void addState(std::uint32_t window, const std::string& state);
    void tellManager(xcb_window_t window, const std::string& type, const std::vector<std::uint32_t>& data);

    /// The tests' own, by which they act as a pager or a user would.
    xcb_connection_t* connection_;
    xcb_screen_t* screen_;
    std::unique_ptr<host::Desktop> desktop_;
    /// They bear the names of their classes.
    std::map<pid_t, std::unique_ptr<QProcess>> programs_;
    std::vector<xcb_window_t> opened_;
    std::map<std::pair<xcb_window_t, xcb_keycode_t>, std::size_t> presses_;
};

/// A home folder for the tests' sake, in force from the start of the process. An application "Test Files" opens folders
/// in it, by adding their paths to its file "opened".
const std::string& temporaryHome();
/// Writes a file below it: "data/" is the user's folder of data, "config/" that of settings.
void writeAtHome(const std::string& name, const std::string& text);
std::string contentsOf(const std::string& path);
