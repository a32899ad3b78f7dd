#pragma once

#include "base/CGGeometry.h"

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A window that counts as one of its application's.
struct WindowEntry {
    std::uint32_t id = 0;
    pid_t pid = 0;
    /// Empty when there is none, and for every window while the right to look at other programs' windows is missing.
    std::string title;
    /// Window space.
    CGRect bounds;
    /// At least one.
    std::vector<std::uint64_t> spaceIDs;
    bool demandsAttention = false;
};

/// Each process with its windows, front first; a process without any has no entry.
using WindowMap = std::map<pid_t, std::vector<WindowEntry>>;

/// Which windows count as windows of an application: those in the ordinary layer, at least 200 by 150 points, owned by
/// a regular application, on some space. Hidden and minimised ones count. Main thread.
namespace WindowIndex {

/// One reading of the window list serves for 0.4 seconds.
std::shared_ptr<const WindowMap> byPID();
/// The windows of every process, one process after the other.
std::vector<WindowEntry> all();
/// Whether a window of the process wants to be looked at, one that doesn't count included. Of the same reading.
bool demandsAttention(pid_t pid);
/// Has the next `byPID` read the list afresh.
void invalidate();

/// Whether any window has a title: the sign that the right to look at other programs' windows is held.
bool titlesAvailable();
/// Asks for that right, and opens the system's settings where it isn't given.
void requestScreenRecording();

/// The focused window of the frontmost application.
std::optional<std::uint32_t> focusedWindowID();

}
