#pragma once

#include "base/CGGeometry.h"
#include "foundation/NSError.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

/// A window that can be captured, as it was when asked for.
class SCWindow {
public:
    SCWindow(std::uint32_t windowID, const CGRect& frame)
        : windowID_(windowID)
        , frame_(frame)
    {
    }

    std::uint32_t windowID() const { return windowID_; }
    /// Window space.
    const CGRect& frame() const { return frame_; }

private:
    std::uint32_t windowID_;
    CGRect frame_;
};

/// What of the screen can be captured. Main thread.
class SCShareableContent {
public:
    using CompletionHandler = std::function<void(const SCShareableContent*, const std::optional<NSError>&)>;

    /// Calls the handler on the main run loop, with the content or else an error. One reading of the windows serves all
    /// who ask in the same turn.
    static void getShareableContent(
        bool excludingDesktopWindows, bool onScreenWindowsOnly, CompletionHandler completionHandler);

    /// Front first.
    const std::vector<SCWindow>& windows() const { return windows_; }

private:
    std::vector<SCWindow> windows_;
};
