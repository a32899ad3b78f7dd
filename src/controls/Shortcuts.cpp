#include "controls/Shortcuts.h"

#include "base/PerDesktop.h"
#include "controls/BarVisibility.h"
#include "foundation/DispatchQueue.h"
#include "foundation/NSProcessInfo.h"
#include "foundation/NSTimer.h"
#include "log/Log.h"
#include "model/Click.h"
#include "settings/Settings.h"
#include "system/ShowDesktop.h"
#include "windowserver/CGEvent.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace {

constexpr CGKeyCode keyB = 11;
constexpr CGKeyCode keyD = 2;
/// 1 to 9, in the order of the digits.
constexpr CGKeyCode digitKeys[] = { 18, 19, 20, 21, 23, 22, 26, 28, 25 };

constexpr CGEventFlags option = kCGEventFlagMaskAlternate;
constexpr CGEventFlags command = kCGEventFlagMaskCommand;
constexpr CGEventFlags control = kCGEventFlagMaskControl;

constexpr double monitorSeconds = 1.0;

struct Watch {
    /// Null until the keyboard is watched.
    CFMachPort tap;
};

CFMachPort& tap()
{
    return perDesktop<Watch>().tap;
}

bool hasOptionAndCommand(CGEventFlags flags)
{
    return (flags & option) != 0 && (flags & command) != 0;
}

bool hasOptionAlone(CGEventFlags flags)
{
    return (flags & (control | option | command)) == option;
}

std::optional<std::size_t> digitIndex(std::int64_t key)
{
    const auto found = std::ranges::find(digitKeys, key);
    return found == std::end(digitKeys) ? std::nullopt : std::optional<std::size_t>(found - std::begin(digitKeys));
}

/// What the tap may claim; the desktop need show it no other key.
std::vector<CGTappedKey> claimableKeys()
{
    std::vector<CGTappedKey> keys { { keyB, option | command }, { keyD, option | command } };
    for (const CGKeyCode digit : digitKeys)
        keys.push_back({ digit, option, control | command });
    return keys;
}

void actOnButton(std::size_t index)
{
    if (!Shortcuts::itemsProvider)
        return;
    std::vector<BarItem> items = Shortcuts::itemsProvider();
    std::erase_if(items, std::mem_fn(&BarItem::isLauncher));
    if (index >= items.size())
        return;
    Log::debug("shortcut: option-", index + 1, " -> ", items[index].name);
    DockModel::handleClick(items[index]);
}

void toggleShowDesktop()
{
    ShowDesktop::forgetIfStale();
    ShowDesktop::toggle();
}

CGEventRef handle(CGEventType type, const CGEventRef& event)
{
    if (type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput) {
        Shortcuts::reenableTap(type == kCGEventTapDisabledByTimeout ? "timeout" : "user input");
        return nullptr;
    }
    const CGEventFlags flags = CGEventGetFlags(event);
    const std::int64_t key = CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode);
    if (key == keyB && hasOptionAndCommand(flags)) {
        DispatchQueue::main().async(BarVisibility::toggle);
        return nullptr;
    }
    if (key == keyD && hasOptionAndCommand(flags)) {
        DispatchQueue::main().async(toggleShowDesktop);
        return nullptr;
    }
    const auto index = digitIndex(key);
    if (!Settings::enableShortcuts() || !hasOptionAlone(flags) || !index)
        return event;
    DispatchQueue::main().async([index] { actOnButton(*index); });
    return nullptr;
}

void logTap()
{
    const std::vector<std::string> taken = Shortcuts::takenKeys();
    if (taken.empty())
        Log::debug("shortcuts: event tap installed");
    for (const std::string& key : taken)
        Log::debug("shortcuts: event tap lacks ", key, ", which another program has");
}

void startMonitor()
{
    NSTimer::scheduledTimer(
        monitorSeconds, true, [] { Log::debug("shortcuts: tap enabled = ", Shortcuts::isTapEnabled()); });
}

}

namespace Shortcuts {

std::function<std::vector<BarItem>()> itemsProvider;

void start()
{
    if (tap())
        return;
    const CFMachPort created = CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault,
        kCGEventMaskKeyDown, claimableKeys(), handle);
    if (!created) {
        Log::debug("shortcuts: could not create event tap");
        return;
    }
    tap() = created;
    CFRunLoopAddSource(CFRunLoopGetCurrent(), CFMachPortCreateRunLoopSource(tap()), kCFRunLoopCommonModes);
    CGEventTapEnable(tap(), true);
    logTap();
    if (NSProcessInfo::environment("BAR_PROBE_TAP") == "1")
        startMonitor();
}

bool isTapEnabled()
{
    return tap() && CGEventTapIsEnabled(tap());
}

std::vector<std::string> takenKeys()
{
    return tap() ? CGEventTapTakenKeys(tap()) : std::vector<std::string>();
}

void reenableTap(std::string_view reason)
{
    if (!tap())
        return;
    CGEventTapEnable(tap(), true);
    Log::debug("shortcuts: tap re-enabled after ", reason);
}

}
