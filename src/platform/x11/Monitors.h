#pragma once

#include "host/Displays.h"
#include "x11/WindowMirror.h"

#include <string>
#include <unordered_set>
#include <vector>

namespace x11 {

/// One RandR monitor.
struct Monitor {
    std::string name;
    std::string edid;
    Rect frame;
    bool isPrimary = false;
};

/// The attached monitors, the primary one first.
class Monitors final : public host::Displays {
public:
    Monitors(Connection& connection, WindowMirror& mirror);

    const std::vector<host::Display>& all() override { return displays_; }
    std::optional<std::size_t> main() override;

    void start();
    void handle(const xcb_generic_event_t& event);
    /// Asks the server where events have told of a change; false when there was nothing.
    bool refresh();
    /// Works out the visible frames again. True when a display came, went or changed.
    bool update();

    /// Docks of our own take nothing from the visible frames.
    void setOwnDocks(std::unordered_set<xcb_window_t> docks) { ownDocks_ = std::move(docks); }

    const Points& points() const { return mirror_.state().points; }
    void setScale(double scale);
    /// The root window itself.
    Rect rootFrame() const { return root_; }
    const std::vector<Monitor>& monitors() const { return monitors_; }
    /// The frame of a monitor less what others' docks reserve; root coordinates.
    Rect visible(const Monitor& monitor) const;

private:
    std::vector<Monitor> readMonitors(Burst& burst);
    void tellPoints();

    Connection& connection_;
    WindowMirror& mirror_;
    Rect root_;
    bool isStale_ = true;
    double scale_ = 1;
    std::vector<Monitor> monitors_;
    std::vector<host::Display> displays_;
    std::unordered_set<xcb_window_t> ownDocks_;
};

}
