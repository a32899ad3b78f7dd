#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// Keyboard events: a tap that sees keys before any program does, and keys that are posted. Main thread.

/// The number of a key's place on the keyboard, as on a US layout, whatever the user's layout is.
using CGKeyCode = std::uint16_t;
using CGEventFlags = std::uint64_t;

inline constexpr CGEventFlags kCGEventFlagMaskShift = 0x20000;
inline constexpr CGEventFlags kCGEventFlagMaskControl = 0x40000;
inline constexpr CGEventFlags kCGEventFlagMaskAlternate = 0x80000;
inline constexpr CGEventFlags kCGEventFlagMaskCommand = 0x100000;

using CGEventType = std::uint32_t;
inline constexpr CGEventType kCGEventKeyDown = 10;
/// Not events: told to a tap when the system has disabled it.
inline constexpr CGEventType kCGEventTapDisabledByTimeout = 0xFFFFFFFE;
inline constexpr CGEventType kCGEventTapDisabledByUserInput = 0xFFFFFFFF;

enum CGEventField { kCGKeyboardEventKeycode = 9 };

struct CGEvent;
using CGEventRef = std::shared_ptr<CGEvent>;

CGEventFlags CGEventGetFlags(const CGEventRef& event);
void CGEventSetFlags(const CGEventRef& event, CGEventFlags flags);
std::int64_t CGEventGetIntegerValueField(const CGEventRef& event, CGEventField field);

// Tapping.

inline constexpr int kCGSessionEventTap = 1;
inline constexpr int kCGHeadInsertEventTap = 0;
inline constexpr int kCGEventTapOptionDefault = 0;
inline constexpr std::uint64_t kCGEventMaskKeyDown = std::uint64_t(1) << kCGEventKeyDown;

/// A key that a tap may claim: it is shown to the tap while all modifiers of `down` are held and none of `up` is.
struct CGTappedKey {
    CGKeyCode key = 0;
    CGEventFlags down = 0;
    CGEventFlags up = 0;
};

struct CGEventTap;
using CFMachPort = std::shared_ptr<CGEventTap>;
/// Gives the event back to let it pass, or null to swallow it. The event is null for the two types that aren't events.
using CGEventTapCallBack = std::function<CGEventRef(CGEventType, const CGEventRef&)>;

/// A tap on key presses, disabled at first; null when there can't be one. Not every desktop can show a program all keys
/// and take back those that it lets pass without the others noticing, so a tap says which keys it is about, and is
/// shown at least those of them that no other program has for itself. There is one tap at a time.
CFMachPort CGEventTapCreate(int location, int placement, int options, std::uint64_t eventsOfInterest,
    const std::vector<CGTappedKey>& keysOfInterest, CGEventTapCallBack callback);
void CGEventTapEnable(const CFMachPort& tap, bool enable);
bool CGEventTapIsEnabled(const CFMachPort& tap);
/// The names of the keys that the enabled tap isn't shown, as another program has them for itself.
std::vector<std::string> CGEventTapTakenKeys(const CFMachPort& tap);

/// What has a tap's events delivered, once it is added to a run loop; until then they pass.
struct CFRunLoopSource {
    CFMachPort tap;
};
struct CFRunLoop { };
inline constexpr const char* kCFRunLoopCommonModes = "kCFRunLoopCommonModes";

CFRunLoopSource CFMachPortCreateRunLoopSource(const CFMachPort& tap);
/// The main one.
CFRunLoop CFRunLoopGetCurrent();
void CFRunLoopAddSource(CFRunLoop loop, const CFRunLoopSource& source, const char* mode);

// Posting.

struct CGEventSource { };
inline constexpr int kCGEventSourceStateCombinedSessionState = 0;
inline constexpr int kCGHIDEventTap = 0;

std::optional<CGEventSource> CGEventSourceCreate(int state);
/// Null when there is no source, or the keyboard has no such key to press.
CGEventRef CGEventCreateKeyboardEvent(const std::optional<CGEventSource>& source, CGKeyCode key, bool isDown);
/// As if the user pressed or released the key, with the modifiers of the event's flags held.
void CGEventPost(int tap, const CGEventRef& event);
