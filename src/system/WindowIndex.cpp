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
#include <unordered_set>

namespace {

constexpr double cacheSeconds = 0.4;
constexpr double leastWidth = 200;
constexpr double leastHeight = 150;
constexpr double focusTimeout = 0.4;

struct Cache {
    std::shared_ptr<const WindowMap> map;
    /// The processes with a window that demands attention.
    std::unordered_set<pid_t> demanding;
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

bool demandsAttention(const Value& entry)
{
    const Value* demands = entry.find(kCGWindowDemandsAttention);
    return demands && demands->boolean() == true;
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
    return WindowEntry { window->number, window->pid, title(entry), *frame, std::move(spaceIDs),
        demandsAttention(entry) };
}

Cache readWindows()
{
    WindowMap windows;
    std::unordered_set<pid_t> demanding;
    RegularProcesses regular;
    const auto list = CGWindowListCopyWindowInfo(kCGWindowListOptionAll, 0);
    for (const Value& entry : dictionaries(list)) {
        if (demandsAttention(entry))
            if (const auto window = ListedWindow::read(entry))
                demanding.insert(window->pid);
        if (auto window = countedWindow(entry, regular))
            windows[window->pid].push_back(std::move(*window));
    }
    return { std::make_shared<const WindowMap>(std::move(windows)), std::move(demanding), NSDate::now() };
}

}

namespace WindowIndex {

std::shared_ptr<const WindowMap> byPID()
{
    if (cache().map && NSDate::now().timeIntervalSince(cache().cachedAt) < cacheSeconds)
        return cache().map;
    cache() = readWindows();
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

bool demandsAttention(pid_t pid)
{
    byPID();
    return cache().demanding.contains(pid);
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
