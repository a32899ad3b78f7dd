#pragma once

#include "contract/DesktopUnderTest.h"

#include <xcb/xcb.h>

#include <cstdio>
#include <map>

/// A program with windows, in a process of its own, that does as it is told; its file says what it can be told.
class ClientProgram {
public:
    explicit ClientProgram(const std::string& name);
    ~ClientProgram();
    ClientProgram(const ClientProgram&) = delete;
    ClientProgram& operator=(const ClientProgram&) = delete;

    pid_t pid() const { return pid_; }
    /// Sends a command and waits for its answer.
    std::uint32_t tell(const std::string& command);

private:
    pid_t pid_ = 0;
    std::FILE* input_ = nullptr;
    std::FILE* output_ = nullptr;
};

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
    void demandAttention(std::uint32_t window) override { tell(window, "attention"); }
    void setTitle(std::uint32_t window, const std::string& title) override;
    void minimise(std::uint32_t window) override;
    void focus(std::uint32_t window) override;
    void enterFullScreen(std::uint32_t window) override;
    void typeKey(std::uint16_t key, std::uint64_t flags) override;
    std::size_t pressesSeen(std::uint32_t window, std::uint16_t key) override;
    bool shows(const QWidget& panel) override;
    void movePointer(CGPoint point) override;
    void click(CGPoint point) override;
    void switchToSpace(std::size_t index) override;

    /// As a pager would, also a window that counts as active though it is iconified.
    void bringForward(std::uint32_t window);

    ClientProgram& program(pid_t pid) { return *programs_.at(pid); }
    /// Tells a window's program to do something with it: "VERB WINDOW REST".
    void tell(std::uint32_t window, const std::string& verb, const std::string& rest = {});
    /// Makes a window that isn't shown yet.
    std::uint32_t createWindow(pid_t pid, const CGRect& frame);

    xcb_connection_t* connection() { return connection_; }
    xcb_window_t root() const { return screen_->root; }
    xcb_atom_t atom(const std::string& name);

private:
    bool settle(const std::function<bool()>& condition, double seconds);
    bool isAnyListed();
    void haveTwoSpaces();
    xcb_window_t activeWindow();
    /// The windows, or other numbers, in a property of the root.
    std::vector<std::uint32_t> rootNumbers(const std::string& property);
    void tellManager(xcb_window_t window, const std::string& type, const std::vector<std::uint32_t>& data);

    /// The tests' own, by which they act as a pager or a user would.
    xcb_connection_t* connection_;
    xcb_screen_t* screen_;
    std::unique_ptr<host::Desktop> desktop_;
    std::map<pid_t, std::unique_ptr<ClientProgram>> programs_;
    std::map<std::uint32_t, pid_t> owners_;
};

/// A home folder for the tests' sake, in force from the start of the process. An application "Test Files" opens folders
/// in it, by adding their paths to its file "opened".
const std::string& temporaryHome();
/// Writes a file below it: "data/" is the user's folder of data, "config/" that of settings.
void writeAtHome(const std::string& name, const std::string& text);
