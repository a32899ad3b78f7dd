#pragma once

#include "base/CGGeometry.h"
#include "embedded/Faults.h"
#include "host/Processes.h"

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace embedded {

/// What an embedded desktop is like when it starts: plain data, from a file, a builder, or written out.
struct Scenario {
    struct Space {
        /// Unique among all spaces, greater than 0.
        std::uint64_t id = 0;
        static constexpr int desktop = 0;
        static constexpr int fullScreen = 4;
        int type = desktop;
        /// The owner of a full-screen space.
        std::optional<pid_t> pid;
    };

    struct Display {
        /// A display without one is a fault that the program must survive; so is one without a UUID.
        std::optional<std::uint32_t> number;
        std::optional<std::string> uuid;
        /// Screen space; the first display's origin is (0, 0).
        CGRect frame { 0, 0, 1440, 900 };
        double menuBarHeight = 24;
        /// What the Dock takes of the edge it lies on while it doesn't hide itself.
        double dockInset = 0;
        /// At least one.
        std::vector<Space> spaces;
        /// Defaults to the first.
        std::optional<std::uint64_t> currentSpace;
    };

    /// Something in a window, as accessibility shows it.
    struct Element {
        /// Of the platform, such as "AXButton".
        std::string role;
        std::optional<std::string> title {};
        std::optional<std::string> description {};
        std::optional<std::string> text {};
        std::optional<double> number {};
        std::optional<double> least {};
        std::optional<double> most {};
        /// Their places in the window's list of elements.
        std::vector<std::size_t> children {};
    };

    struct Window {
        /// Unique; 0 has the desktop choose.
        std::uint32_t number = 0;
        pid_t owner = 0;
        std::optional<std::string> title;
        /// 0 is the layer of ordinary windows; those below are part of the desktop itself.
        int layer = 0;
        /// Window space.
        CGRect bounds { 100, 100, 640, 480 };
        /// Defaults to the current space of the display that the window lies on.
        std::optional<std::vector<std::uint64_t>> spaces;
        bool isMinimised = false;
        bool isFullScreen = false;
        /// Whether accessibility knows of it.
        bool isAccessible = true;
        bool demandsAttention = false;
        /// The first stands for the window itself: what it holds is what the window holds. May be empty.
        std::vector<Element> elements {};
        WindowFaults faults;
    };

    struct Process {
        pid_t pid = 0;
        std::optional<std::string> name;
        std::optional<std::string> bundleIdentifier;
        std::optional<std::string> bundlePath;
        /// The name of a bundled icon ("mail"), or the full path of a picture.
        std::optional<std::string> icon;
        host::ActivationPolicy policy = host::ActivationPolicy::regular;
        bool isHidden = false;
        ProcessFaults faults;
    };

    struct Application {
        /// Absolute, ending in ".app".
        std::string path;
        std::optional<std::string> bundleIdentifier;
        std::string displayName;
        std::optional<std::string> icon;
        /// The windows that it opens when it is launched. Owner and number are left open.
        std::vector<Window> windows;
    };

    struct Tile {
        std::string label;
        /// The text of the tile's URL, such as "file:///Applications/Mail.app/".
        std::string url;
    };

    std::vector<Display> displays;
    std::vector<Process> processes;
    /// Front first.
    std::vector<Window> windows;
    std::vector<Application> applications;
    /// Seeds the Dock's preferences when they don't exist yet.
    std::vector<Tile> dockTiles;
    /// Badge by the title of the tile.
    std::map<std::string, std::string> badges;
    std::vector<std::string> trash;
    /// Defaults to the owner of the foremost window.
    std::optional<pid_t> frontmost;
    bool accessibilityPermitted = true;
    bool screenCapturePermitted = true;
    /// 0xRRGGBB
    std::optional<std::uint32_t> accentColor = 0x3478F6;
    DesktopFaults faults;
};

/// The desktop's own programs, which run whether or not a scenario names them.
inline constexpr const char* dockIdentifier = "com.apple.dock";
inline constexpr const char* finderIdentifier = "com.apple.finder";

}
