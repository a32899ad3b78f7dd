#pragma once

#include "x11/ComingForward.h"
#include "x11/Connection.h"
#include "x11/DesktopState.h"

namespace x11 {

/// What can be asked of a window. Requests are sent and not waited for; one about a window that has died is passed over
/// by the server. Any thread that holds the mirror's lock.
class WindowRequests {
public:
    virtual ~WindowRequests() = default;

    /// To the front, with the keyboard.
    virtual void activate(const WindowRecord& window) = 0;
    virtual void raise(const WindowRecord& window) = 0;
    virtual void iconify(const WindowRecord& window) = 0;
    virtual void deiconify(const WindowRecord& window) = 0;
    virtual void close(const WindowRecord& window) = 0;
    /// The parts that are set, in root coordinates: where the window's outer top left corner goes, and the size that
    /// the client gets.
    virtual void moveResize(const WindowRecord& window, std::optional<Point> corner, std::optional<Point> size) = 0;
    virtual void setFullScreen(const WindowRecord& window, bool isFullScreen) = 0;
    virtual void setDesktop(const WindowRecord& window, std::uint32_t desktop) = 0;
};

/// Through a window manager that speaks EWMH.
class EwmhRequests final : public WindowRequests {
public:
    EwmhRequests(const Connection& connection, const DesktopState& state)
        : connection_(connection)
        , state_(state)
    {
    }

    void activate(const WindowRecord& window) override;
    void raise(const WindowRecord& window) override;
    void iconify(const WindowRecord& window) override;
    void deiconify(const WindowRecord& window) override;
    void close(const WindowRecord& window) override;
    void moveResize(const WindowRecord& window, std::optional<Point> corner, std::optional<Point> size) override;
    void setFullScreen(const WindowRecord& window, bool isFullScreen) override;
    void setDesktop(const WindowRecord& window, std::uint32_t desktop) override;

    /// Whether some window has been asked to come forward and hasn't come yet.
    bool isBringingForward() const { return comingForward_.isAny(state_); }

private:
    void changeStates(const WindowRecord& window, bool add, xcb_atom_t first, xcb_atom_t second) const;

    const Connection& connection_;
    /// Under the mirror's lock, as is all that a request reads.
    const DesktopState& state_;
    ComingForward comingForward_;
};

/// Straight to the server, where no window manager runs.
class BareRequests final : public WindowRequests {
public:
    explicit BareRequests(const Connection& connection)
        : connection_(connection)
    {
    }

    void activate(const WindowRecord& window) override;
    void raise(const WindowRecord& window) override;
    void iconify(const WindowRecord& window) override;
    void deiconify(const WindowRecord& window) override;
    void close(const WindowRecord& window) override;
    void moveResize(const WindowRecord& window, std::optional<Point> corner, std::optional<Point> size) override;
    void setFullScreen(const WindowRecord& window, bool isFullScreen) override;
    void setDesktop(const WindowRecord& window, std::uint32_t desktop) override;

private:
    void setWmState(const WindowRecord& window, WmState state) const;

    const Connection& connection_;
};

}
