#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <vector>

/// An ordinary window of a regular application, as a space lists it.
struct SpaceWindow {
    std::uint32_t id = 0;
    pid_t pid = 0;

    bool operator==(const SpaceWindow&) const = default;
};

/// A desktop or a full-screen space of the window server.
struct Space {
    std::uint64_t id64 = 0;
    /// The window server's kind of space; -1 when it names none.
    std::int64_t type = -1;
    /// The process that owns a full-screen space.
    std::optional<pid_t> ownerPID;
    /// Front first.
    std::vector<SpaceWindow> windows;
    bool isActive = false;

    bool isFullScreen() const { return type == 4; }
    /// The owner alone where there is one, else every process with a window here, in the order of their first windows.
    std::vector<pid_t> appPIDs() const;
};
