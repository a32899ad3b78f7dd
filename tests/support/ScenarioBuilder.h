#pragma once

#include "embedded/Scenario.h"

#include <string>

namespace embedded {

/// A scenario in a few lines, for tests. It starts with one display of 1440 by 900 points, with the spaces 1 and 2 and
/// a menu bar of 24 points, and no Dock tiles. Everything else is set on the records:
///
///     ScenarioBuilder desk;
///     const pid_t mail = desk.app("Mail").pid;
///     desk.window(mail, "Inbox").bounds = { 100, 80, 800, 600 };
///     desk.badges["Mail"] = "3";
///
/// A record that is returned stays in place until the next of its kind is added. Windows are listed front first.
struct ScenarioBuilder : Scenario {
    ScenarioBuilder();

    /// Another display, to the right of the last one: number 2, UUID "DISPLAY-2", one space.
    Display& addDisplay(double width = 1440, double height = 900);
    /// A running regular application: identifier "org.example.NAME", bundle "/Applications/NAME.app". Process
    /// identifiers count up from `firstPid`.
    Process& app(const std::string& name);
    /// An installed application that doesn't run. When it is launched it opens one window, "Untitled".
    Application& installedApp(const std::string& name);
    /// Installed, and among the Dock's tiles.
    void pinnedApp(const std::string& name);
    /// A window of a process. Window numbers count up from 1.
    Window& window(pid_t owner, const std::string& title);
};

}
