#pragma once

#include "x11/WindowMirror.h"
#include "x11/WindowRequests.h"

#include <functional>

namespace x11 {

/// Drives other programs' windows by what the mirror knows of them. Any thread.
class WindowManager {
public:
    WindowManager(Connection& connection, const WindowMirror& mirror);

    /// Runs `act` with the window and the way to ask something of it, and sends what it asked. False when there is no
    /// such window.
    using Act = std::function<void(WindowRequests&, const DesktopState&, const WindowRecord&)>;
    bool with(xcb_window_t window, const Act& act);
    /// The same for a process's windows, front first. False when it has none.
    bool withEach(pid_t pid, const Act& act);

    /// Makes the process's last active window that isn't iconified the active one. False when it has no window.
    bool activate(pid_t pid);
    /// The same, with the window that was active last brought back where all are iconified.
    bool reopen(pid_t pid);
    /// Activates whichever other program's window was active last and can be.
    void activateLast();
    /// Whether a window has been asked to come forward and hasn't come yet.
    bool isBringingForward() const;
    /// Moves or resizes a window by its outer bounds; root coordinates.
    bool setOuter(xcb_window_t window, std::optional<Point> corner, std::optional<Point> size);
    /// Cuts the connections of the programs that own the process's windows. False when it has none.
    bool cutOff(pid_t pid);

private:
    WindowRequests& requests(const DesktopState& state);

    Connection& connection_;
    const WindowMirror& mirror_;
    EwmhRequests ewmh_;
    BareRequests bare_;
};

}
