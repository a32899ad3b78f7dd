#pragma once

#include "base/CGGeometry.h"

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// A window of any program. A record never changes; a change makes a new record. What is absent the desktop doesn't
/// tell.
struct Window {
    std::uint32_t number = 0;
    /// Among the desktop's processes.
    pid_t owner = 0;
    std::optional<std::string> title;
    /// Windows of a higher layer are in front of all of a lower one. 0 is that of ordinary windows.
    int layer = 0;
    /// Window space, decorations included.
    std::optional<CGRect> bounds;
    /// Those that it lies on; absent where the desktop has no spaces.
    std::optional<std::vector<std::uint64_t>> spaces;
    /// Whether it shows: not minimised, not hidden, on a space that is in front.
    bool isOnScreen = false;
    /// Whether it wants to be looked at, and hasn't been since.
    bool demandsAttention = false;

    bool operator==(const Window&) const = default;
};

struct Space {
    /// Unique among all spaces, greater than 0.
    std::uint64_t id = 0;
    bool isFullScreen = false;
    /// Of a full-screen space.
    std::optional<pid_t> owner;
};

/// The spaces of one display.
struct DisplaySpaces {
    /// The display's lasting identifier.
    std::optional<std::string> uuid;
    /// The one in front; absent when it is none of `spaces`.
    std::optional<std::uint64_t> current;
    std::vector<Space> spaces;
};

/// The windows of all programs, and the spaces that they lie on. Reading costs no round trip to anybody. Main thread.
class Windows {
public:
    virtual ~Windows() = default;

    using List = std::vector<std::shared_ptr<const Window>>;

    /// All windows, in the order in which they appeared.
    virtual List all() = 0;
    /// Those that show now and are no part of the desktop itself, front first.
    virtual List onScreen() = 0;
    /// Null when there is no such window.
    virtual std::shared_ptr<const Window> find(std::uint32_t number) = 0;

    /// Counts what has happened to windows, processes and displays: the same count twice means that whatever is asked
    /// of them gets the same answer. Absent where the desktop can't tell.
    virtual std::optional<std::uint64_t> changeCount() { return std::nullopt; }

    /// The space in front; of several displays, that of the one with the focus. Absent where the desktop has no spaces.
    virtual std::optional<std::uint64_t> activeSpace() { return std::nullopt; }
    /// An entry a display; empty where the desktop has no spaces.
    virtual std::vector<DisplaySpaces> displaySpaces() { return {}; }

    /// Set by the layer: another space came to the front, windows opened, closed or changed their space, or the focus
    /// went to another window without another application being activated, or to none.
    std::function<void()> onChange;
};

}
