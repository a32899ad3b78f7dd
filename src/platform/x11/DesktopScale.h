#pragma once

#include "x11/Connection.h"

#include <map>
#include <optional>
#include <string>

namespace x11 {

/// What can say how large things are to be. Resolutions are in dots an inch; 96 is a pixel to a point.
struct ScaleSources {
    /// What the user asks of every program of a toolkit, in the environment.
    std::optional<double> environment {};
    /// The settings manager's; resolutions among them are in 1024ths.
    std::map<std::string, std::int32_t> settings {};
    /// "Xft.dpi" of the resources.
    std::optional<double> resource {};
    /// The server's own resolution of fonts.
    double server = 96;
};

/// Pixels to a point, in quarters, at least 1. The first that says something decides, in the order above.
double scaleOf(const ScaleSources& sources);

/// How many pixels of this desktop make a point, and news of that.
class DesktopScale {
public:
    explicit DesktopScale(Connection& connection);

    void handle(const xcb_generic_event_t& event);
    /// Asks the server where events have told of a change; false when there was nothing.
    bool refresh();
    double value() const { return scaleOf(sources_); }

private:
    Connection& connection_;
    ScaleSources sources_;
    bool isStale_ = true;
    /// The settings manager's window.
    xcb_window_t manager_ = XCB_WINDOW_NONE;
};

}
