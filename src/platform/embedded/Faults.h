#pragma once

#include "base/CGGeometry.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace embedded {

/// Calls that fail, by the name of the action, attribute or request, and how many times more; -1 for always. With "set
/// " before it, an attribute can be read but not written.
using FailingCalls = std::map<std::string, int, std::less<>>;

/// What can be wrong with a window.
struct WindowFaults {
    /// Takes a new size without a word and keeps the old one.
    bool refusesSizes = false;
    /// Never gets smaller than this.
    std::optional<CGSize> minimumSize;
    /// Of accessibility, and "capture".
    FailingCalls fails;
};

enum class Refusal { never, once, always };

/// What can be wrong with an application.
struct ProcessFaults {
    /// Answers no accessibility call: each costs its caller the whole messaging time-out.
    bool hangs = false;
    Refusal refusesToHide = Refusal::never;
    /// Names no windows until "AXManualAccessibility" was set.
    bool needsManualAccessibility = false;
    /// Names only its small windows, those under 120000 square points.
    bool namesOnlyTransientWindows = false;
    /// Answers with a text when it is asked for its focused window.
    bool misnamesFocusedWindow = false;
    /// Fails calls on the application and on all its windows.
    FailingCalls fails;
    /// The process ends when this call reaches it.
    std::optional<std::string> diesAt;
};

/// What can be wrong with the desktop.
struct DesktopFaults {
    /// No program may watch the keyboard.
    bool keyTapMissing = false;
    /// The names of keys that another program has for itself.
    std::vector<std::string> takenKeys;
    /// The Dock doesn't run and isn't relaunched.
    bool dockMissing = false;
    /// The paths of tools that can't be launched.
    std::vector<std::string> missingTools;
    /// Command lines of tools that fail, by a part of them.
    FailingCalls failingTools;
    /// "register" and "unregister" of the login item.
    FailingCalls failingLoginItem;
    /// How long, in seconds, a window takes to enter or leave full screen.
    double fullScreenDelay = 0;
    /// How long, in seconds, a capture takes.
    double captureDelay = 0;
};

}
