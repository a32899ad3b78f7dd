#include "system/WindowIndex.h"

#include "appkit/NSWorkspace.h"
#include "base/PerDesktop.h"
#include "foundation/NSDate.h"
#include "log/Log.h"
#include "system/Attribute.h"
#include "system/Dictionaries.h"
#include "system/ListedWindow.h"
#include "system/RegularProcesses.h"
#include "system/SpaceScanner.h"
#include "windowserver/CGWindow.h"

#include <algorithm>

namespace {

constexpr double cacheSeconds = 0.4;
constexpr double leastWidth = 200;
constexpr double leastHeight = 150;
constexpr double focusTimeout = 0.4;

struct Cache {
    std::shared_ptr<const WindowMap> map;
    NSDate cachedAt = NSDate::distantPast();
};

Cache& cache()
{
    return perDesktop<Cache>();
}

std::optional<CGRect> bounds(const Value& entry)
{
    const Value* dictionary = entry.find(kCGWindowBounds);
    return dictionary ? CGRectMakeWithDictionaryRepresentation(*dictionary) : std::nullopt;
}

std::string title(const Value& entry)
{
    const Value* name = entry.find(kCGWindowName);
    const std::string* text = name ? name->string() : nullptr;
    return text ? *text : std::string();
}

/// The tests stand in the order of their cost.
std::optional<WindowEntry> countedWindow(const Value& entry, RegularProcesses& regular)
{
    const auto window = ListedWindow::read(entry);
    if (!window || window->layer != 0)
        return std::nullopt;
    const auto frame = bounds(entry);
    if (!frame || frame->width < leastWidth || frame->height < leastHeight)
        return std::nullopt;
    if (!regular.contains(window->pid))
        return std::nullopt;
    auto spaceIDs = SpaceScanner::spaceIDsForWindow(window->number);
    if (spaceIDs.empty())
        return std::nullopt;
    return WindowEntry { window->number, window->pid, title(entry), *frame, std::move(spaceIDs) };
}

WindowMap readWindows()
{
    WindowMap windows;
    RegularProcesses regular;
    const auto list = CGWindowListCopyWindowInfo(kCGWindowListOptionAll, 0);
    for (const Value& entry : dictionaries(list))
        if (auto window = countedWindow(entry, regular))
            windows[window->pid].push_back(std::move(*window));
    return windows;
}

}

namespace WindowIndex {

std::shared_ptr<const WindowMap> byPID()
{
    if (cache().map && NSDate::now().timeIntervalSince(cache().cachedAt) < cacheSeconds)
        return cache().map;
    cache() = { std::make_shared<const WindowMap>(readWindows()), NSDate::now() };
    return cache().map;
}

std::vector<WindowEntry> all()
{
    std::vector<WindowEntry> windows;
    const auto map = byPID();
    for (const auto& [pid, list] : *map)
        windows.insert(windows.end(), list.begin(), list.end());
    return windows;
}

void invalidate()
{
    cache().map = nullptr;
}

bool titlesAvailable()
{
    const auto map = byPID();
    return std::ranges::any_of(*map, [](const auto& process) {
        return std::ranges::any_of(process.second, [](const WindowEntry& window) { return !window.title.empty(); });
    });
}

void requestScreenRecording()
{
    const bool given = CGRequestScreenCaptureAccess();
    Log::debug("screen recording requested -> ", given);
    if (given)
        return;
    if (const auto settings
        = NSURL::URLWithString("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"))
        NSWorkspace::sharedWorkspace().openURL(*settings);
}

std::optional<std::uint32_t> focusedWindowID()
{
    const auto frontmost = NSWorkspace::sharedWorkspace().frontmostApplication();
    if (!frontmost)
        return std::nullopt;
    const AXUIElement application = Attribute::application(frontmost->processIdentifier(), focusTimeout);
    const auto window = Attribute::element(application, "AXFocusedWindow");
    return window ? Attribute::windowNumber(*window) : std::nullopt;
}

}
