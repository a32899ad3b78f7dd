#pragma once

#include "base/CGGeometry.h"
#include "host/Desktop.h"

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

class QWidget;

/// A desktop, and the means to act on it from outside as a user or another program would. The contract suite knows no
/// more than this of the desktop that it runs on.
class DesktopUnderTest {
public:
    virtual ~DesktopUnderTest() = default;

    virtual host::Desktop& desktop() = 0;

    /// Lets the desktop work until the condition holds. False when it doesn't within a few seconds.
    virtual bool settle(const std::function<bool()>& condition) = 0;

    /// Starts a program without windows; ends it with its windows.
    virtual pid_t startProgram(const std::string& name) = 0;
    virtual void endProgram(pid_t pid) = 0;
    /// Opens an ordinary window of the program, about there (window space), and gives its number.
    virtual std::uint32_t openWindow(pid_t pid, const std::string& title, const CGRect& frame) = 0;
    virtual void closeWindow(std::uint32_t window) = 0;
    /// Installs an application of which each launch opens a small window; gives its bundle's path.
    virtual std::string install(const std::string& name) = 0;
    /// The window's program asks the user to look at it.
    virtual void demandAttention(std::uint32_t window) = 0;
    virtual void setTitle(std::uint32_t window, const std::string& title) = 0;
    /// What a user does at the window's own controls.
    virtual void minimise(std::uint32_t window) = 0;
    virtual void focus(std::uint32_t window) = 0;
    virtual void enterFullScreen(std::uint32_t window) = 0;

    /// The user presses and releases a key, with the modifiers of the flags held.
    virtual void typeKey(std::uint16_t key, std::uint64_t flags) = 0;
    /// How often the window's program has seen that key go down.
    virtual std::size_t pressesSeen(std::uint32_t window, std::uint16_t key) = 0;

    /// Whether a panel of ours is really on the screen.
    virtual bool shows(const QWidget& panel) = 0;

    /// Moves the pointer, screen space.
    virtual void movePointer(CGPoint point) = 0;
    /// The user clicks there with the first button, screen space.
    virtual void click(CGPoint point) = 0;
    /// The user goes to the nth desktop, from 0; there are at least two.
    virtual void switchToSpace(std::size_t index) = 0;
};

/// How to make each desktop that takes part, by its name. Each desktop's file adds itself.
struct DesktopKind {
    std::string name;
    std::function<std::unique_ptr<DesktopUnderTest>()> make;
};
std::vector<DesktopKind>& desktopKinds();

inline void PrintTo(const DesktopKind& kind, std::ostream* stream)
{
    *stream << kind.name;
}
