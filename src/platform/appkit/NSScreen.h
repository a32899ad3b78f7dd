#pragma once

#include "base/CGGeometry.h"
#include "base/Value.h"

#include <optional>
#include <vector>

/// A screen as it was when asked for. Frames are in screen space. Equal screens are the same screen.
class NSScreen {
public:
    /// The primary screen first.
    static std::vector<NSScreen> screens();
    /// The screen with the keyboard focus.
    static std::optional<NSScreen> mainScreen();

    const CGRect& frame() const { return frame_; }
    const CGRect& visibleFrame() const { return visibleFrame_; }
    /// Holds "NSScreenNumber".
    const Value::Dictionary& deviceDescription() const { return deviceDescription_; }

    bool operator==(const NSScreen& other) const { return index_ == other.index_ && frame_ == other.frame_; }

private:
    NSScreen() = default;

    std::size_t index_ = 0;
    CGRect frame_;
    CGRect visibleFrame_;
    Value::Dictionary deviceDescription_;

    friend NSScreen screenOf(std::size_t index);
};

extern const char* const NSApplicationDidChangeScreenParametersNotification;
