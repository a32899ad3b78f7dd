#pragma once

#include "appkit/NSImage.h"
#include "appkit/NSRunningApplication.h"
#include "foundation/NSURL.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>

/// One button of a bar: an application, or one window of it. As of the moment it was made.
struct BarItem {
    /// The button's label.
    std::string name;
    std::optional<std::string> bundleID;
    std::optional<NSURL> bundleURL;
    std::optional<NSImage> icon;
    bool isPinned = false;
    /// Present while the application runs.
    std::optional<pid_t> pid;
    /// Of a window: it is the focused one of the frontmost application.
    bool isFrontmost = false;
    /// The system's own application launcher.
    bool isLauncher = false;

    /// Present when the button stands for one window.
    std::optional<std::uint32_t> windowID {};
    std::optional<std::string> badge {};
    /// How many counted windows the application has; 0 on a button of one window.
    int windowCount = 0;
    /// A window of what it stands for wants to be looked at.
    bool demandsAttention = false;

    bool isRunning() const { return pid.has_value(); }
};

/// The item's application; absent when it isn't running any more.
std::optional<NSRunningApplication> runningApplication(const BarItem& item);

namespace DockModel {

/// What stands for an application in the settings: its bundle identifier, or its name when it has none.
std::string key(const BarItem& item);

}
