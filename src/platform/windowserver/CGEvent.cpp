#include "windowserver/CGEvent.h"

#include "host/Desktop.h"
#include "host/Keyboard.h"

struct CGEvent {
    host::KeyPress press;
    bool isDown = true;
};

struct CGEventTap {
    CGEventTapCallBack callback;
    bool isInRunLoop = false;
};

namespace {

host::Keyboard& keyboard()
{
    return host::Desktop::current().keyboard();
}

bool swallows(CGEventTap& tap, const host::KeyPress& press)
{
    const auto event = std::make_shared<CGEvent>(CGEvent { press, true });
    return tap.isInRunLoop && !tap.callback(kCGEventKeyDown, event);
}

void tellDisabled(CGEventTap& tap, host::Keyboard::TapEnd end)
{
    if (tap.isInRunLoop)
        tap.callback(
            end == host::Keyboard::TapEnd::timeout ? kCGEventTapDisabledByTimeout : kCGEventTapDisabledByUserInput,
            nullptr);
}

}

CGEventFlags CGEventGetFlags(const CGEventRef& event)
{
    return event->press.flags;
}

void CGEventSetFlags(const CGEventRef& event, CGEventFlags flags)
{
    event->press.flags = flags;
}

std::int64_t CGEventGetIntegerValueField(const CGEventRef& event, CGEventField)
{
    return event->press.key;
}

CFMachPort CGEventTapCreate(int, int, int, std::uint64_t eventsOfInterest,
    const std::vector<CGTappedKey>& keysOfInterest, CGEventTapCallBack callback)
{
    std::vector<host::TappedKey> keys;
    for (const CGTappedKey& each : keysOfInterest)
        keys.push_back({ each.key, each.down, each.up });
    if (eventsOfInterest != kCGEventMaskKeyDown || !keyboard().tap(keys))
        return nullptr;

    auto tap = std::make_shared<CGEventTap>(CGEventTap { std::move(callback) });
    keyboard().onPress = [weak = std::weak_ptr(tap)](const host::KeyPress& press) {
        const auto self = weak.lock();
        return self && swallows(*self, press);
    };
    keyboard().onTapDisabled = [weak = std::weak_ptr(tap)](host::Keyboard::TapEnd end) {
        if (const auto self = weak.lock())
            tellDisabled(*self, end);
    };
    return tap;
}

void CGEventTapEnable(const CFMachPort&, bool enable)
{
    keyboard().enableTap(enable);
}

bool CGEventTapIsEnabled(const CFMachPort&)
{
    return keyboard().isTapEnabled();
}

std::vector<std::string> CGEventTapTakenKeys(const CFMachPort&)
{
    return keyboard().takenKeys();
}

CFRunLoopSource CFMachPortCreateRunLoopSource(const CFMachPort& tap)
{
    return { tap };
}

CFRunLoop CFRunLoopGetCurrent()
{
    return {};
}

void CFRunLoopAddSource(CFRunLoop, const CFRunLoopSource& source, const char*)
{
    source.tap->isInRunLoop = true;
}

std::optional<CGEventSource> CGEventSourceCreate(int)
{
    return CGEventSource {};
}

CGEventRef CGEventCreateKeyboardEvent(const std::optional<CGEventSource>& source, CGKeyCode key, bool isDown)
{
    if (!source || !keyboard().canPost(key))
        return nullptr;
    return std::make_shared<CGEvent>(CGEvent { { key, 0 }, isDown });
}

void CGEventPost(int, const CGEventRef& event)
{
    keyboard().post(event->press, event->isDown);
}
