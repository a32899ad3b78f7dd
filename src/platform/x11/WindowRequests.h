#pragma once

#include "x11/Connection.h"
#include "x11/DesktopState.h"

namespace x11 {

/// What can be asked of a window. Requests are sent and not waited for; one about a window that has died is passed over
/// by the server. Any thread.
class WindowRequests {
public:
    virtual ~WindowRequests() = default;

    /// To the front, with the keyboard.
    virtual void activate(const WindowRecord& window) const = 0;
    virtual void raise(const WindowRecord& window) const = 0;
    virtual void iconify(const WindowRecord& window) const = 0;
    virtual void deiconify(const WindowRecord& window) const = 0;
    virtual void close(const WindowRecord& window) const = 0;
    /// The parts that are set, in root coordinates: where the window's outer top left corner goes, and the size that
    /// the client gets.
    virtual void moveResize(
        const WindowRecord& window, std::optional<Point> corner, std::optional<Point> size) const = 0;
    virtual void setFullScreen(const WindowRecord& window, bool isFullScreen) const = 0;
    virtual void setDesktop(const WindowRecord& window, std::uint32_t desktop) const = 0;
};

/// Through a window manager that speaks EWMH.
class EwmhRequests final : public WindowRequests {
public:
    EwmhRequests(const Connection& connection, const DesktopState& state)
        : connection_(connection)
        , state_(state)
    {
    }

    void activate(const WindowRecord& window) const override;
    void raise(const WindowRecord& window) const override;
    void iconify(const WindowRecord& window) const override;
    void deiconify(const WindowRecord& window) const override;
    void close(const WindowRecord& window) const override;
    void moveResize(const WindowRecord& window, std::optional<Point> corner, std::optional<Point> size) const override;
    void setFullScreen(const WindowRecord& window, bool isFullScreen) const override;
    void setDesktop(const WindowRecord& window, std::uint32_t desktop) const override;

private:
    bool isComingForward(const WindowRecord& window) const;
    void changeStates(const WindowRecord& window, bool add, xcb_atom_t first, xcb_atom_t second) const;

    const Connection& connection_;
    /// Read under the mirror's lock, which whoever makes a request holds.
    const DesktopState& state_;

    /// The last window that was asked to come forward. Under the same lock.
    struct Asked {
        xcb_window_t window = XCB_WINDOW_NONE;
        xcb_window_t activeBefore = XCB_WINDOW_NONE;
        /// Nanoseconds of the clock.
        std::uint64_t at = 0;
    };
    mutable Asked asked_;
};

/// Straight to the server, where no window manager runs.
class BareRequests final : public WindowRequests {
public:
    explicit BareRequests(const Connection& connection)
        : connection_(connection)
    {
    }

    void activate(const WindowRecord& window) const override;
    void raise(const WindowRecord& window) const override;
    void iconify(const WindowRecord& window) const override;
    void deiconify(const WindowRecord& window) const override;
    void close(const WindowRecord& window) const override;
    void moveResize(const WindowRecord& window, std::optional<Point> corner, std::optional<Point> size) const override;
    void setFullScreen(const WindowRecord& window, bool isFullScreen) const override;
    void setDesktop(const WindowRecord& window, std::uint32_t desktop) const override;

private:
    void setWmState(const WindowRecord& window, WmState state) const;

    const Connection& connection_;
};

}
