#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

struct IconSource;

namespace host {

/// What came of a capture.
struct Captured {
    /// Null when it failed.
    std::shared_ptr<const IconSource> picture;
    /// Why it failed, for people.
    std::string error;
};

/// Looking at other programs' windows; here, of a desktop that shows them to nobody. Main thread.
class Capture {
public:
    virtual ~Capture() = default;

    /// Whether there can be pictures at all, with the user's permission.
    virtual bool isSupported() { return false; }
    virtual bool isPermitted() { return false; }
    /// Asks the user where it isn't; true when it is held afterwards.
    virtual bool requestPermission() { return false; }

    /// A picture of the window itself, decorations included, whatever lies over it, scaled down to that many points.
    /// Returns at once and costs the main thread nothing more; `done` is called on the main run loop, not before this
    /// returns, and once, or never where the desktop goes first. Fails without permission, for a window that isn't
    /// there, and for one whose pixels the desktop doesn't keep. Not called where it isn't supported.
    virtual void capture(
        std::uint32_t /*window*/, int /*width*/, int /*height*/, std::function<void(Captured)> /*done*/)
    {
    }
};

}
