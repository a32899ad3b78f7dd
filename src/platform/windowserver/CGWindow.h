#pragma once

#include "base/Value.h"

#include <cstdint>
#include <optional>

/// The window server's calls. Any result may be missing; a caller takes that, or a wrong type, for an empty one. Main
/// thread.

using CGSConnectionID = std::int32_t;

inline constexpr unsigned kCGSSpaceIncludesCurrent = 1;
inline constexpr unsigned kCGSSpaceIncludesOthers = 2;
inline constexpr unsigned kCGSSpaceIncludesUser = 4;
inline constexpr unsigned kCGSAllSpacesMask
    = kCGSSpaceIncludesCurrent | kCGSSpaceIncludesOthers | kCGSSpaceIncludesUser;

CGSConnectionID CGSMainConnectionID();
std::uint64_t CGSGetActiveSpace(CGSConnectionID connection);
/// Changes whenever windows, processes or displays do; absent where that can't be told.
std::optional<std::uint64_t> CGSGetChangeCount(CGSConnectionID connection);
/// One dictionary a display: "Display Identifier" text, "Current Space" dictionary with "id64", "Spaces" array of
/// dictionaries with "id64", "type" (4 is full screen) and, of a full-screen space, "pid".
std::optional<Value> CGSCopyManagedDisplaySpaces(CGSConnectionID connection);
/// The spaces of the one window in `windows`, an array of numbers.
std::optional<Value> CGSCopySpacesForWindows(CGSConnectionID connection, unsigned mask, const Value& windows);

inline constexpr unsigned kCGWindowListOptionAll = 0;
inline constexpr unsigned kCGWindowListOptionOnScreenOnly = 1;
inline constexpr unsigned kCGWindowListExcludeDesktopElements = 16;

/// Numbers: kCGWindowNumber (unsigned 32-bit), kCGWindowOwnerPID (signed 32-bit), kCGWindowLayer (0 is the layer of
/// ordinary windows).
inline constexpr const char* kCGWindowNumber = "kCGWindowNumber";
inline constexpr const char* kCGWindowOwnerPID = "kCGWindowOwnerPID";
inline constexpr const char* kCGWindowLayer = "kCGWindowLayer";
/// The dictionary form of a rectangle, window space, decorations included.
inline constexpr const char* kCGWindowBounds = "kCGWindowBounds";
/// Text; the title is absent without the right to look at other programs' windows.
inline constexpr const char* kCGWindowName = "kCGWindowName";
/// A boolean, there only while the window wants to be looked at.
inline constexpr const char* kCGWindowDemandsAttention = "kCGWindowDemandsAttention";
inline constexpr const char* kCGWindowOwnerName = "kCGWindowOwnerName";
/// A number from 0 to 1.
inline constexpr const char* kCGWindowAlpha = "kCGWindowAlpha";

/// An array of dictionaries with the keys above. `option` is 0 (all, those on other spaces included, in the order in
/// which they appeared) or 17 (on screen, without the desktop's own, front first). A dictionary that is the same object
/// as at the call before tells that nothing of its window has changed since, its spaces included; an array that is, the
/// same of them all.
std::optional<Value> CGWindowListCopyWindowInfo(unsigned option, std::uint32_t relativeToWindow);

/// Whether this program may look at other programs' windows.
bool CGPreflightScreenCaptureAccess();
/// The same; the user is asked where it may not.
bool CGRequestScreenCaptureAccess();
