#include "system/WindowIndex.h"

#include "appkit/NSWorkspace.h"
#include "base/Carried.h"
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
#include <map>
#include <set>
#include <utility>

namespace {

constexpr double cacheSeconds = 0.4;
constexpr double leastWidth = 200;
constexpr double leastHeight = 150;
constexpr double focusTimeout = 0.4;

/// What one entry of the list amounts to. The window is there if it counts, as far as its owner does.
struct Reading {
    Value entry = false;
    std::optional<WindowEntry> window;
    /// The owner of a window that demands attention, whether it counts or not.
    std::optional<pid_t> demanding;
};

struct Index {
    std::optional<Value> list;
    Carried<const Value::Dictionary*, Reading> readings;
    /// Whether each process that owns such windows is a regular application.
    std::map<pid_t, bool> owners;
    /// How many windows of each process demand attention.
    std::map<pid_t, int> demanding;
    std::shared_ptr<WindowMap> map = std::make_shared<WindowMap>();
    NSDate readAt = NSDate::distantPast();
};

Index& index()
{
    return perDesktop<Index>();
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

std::optional<pid_t> demandingOwner(const Value& entry)
{
    const auto window = demandsAttention(entry) ? ListedWindow::read(entry) : std::nullopt;
    return window ? std::optional(window->pid) : std::nullopt;
}

std::optional<WindowEntry> countedWindow(const Value& entry)
{
    const auto window = ListedWindow::read(entry);
    if (!window || window->layer != 0)
        return std::nullopt;
    const auto frame = bounds(entry);
    if (!frame || frame->width < leastWidth || frame->height < leastHeight)
        return std::nullopt;
    auto spaceIDs = SpaceScanner::spaceIDsForWindow(window->number);
    if (spaceIDs.empty())
        return std::nullopt;
    return WindowEntry { window->number, window->pid, title(entry), *frame, std::move(spaceIDs),
        demandsAttention(entry) };
}

/// Reads the list anew, and gives the processes of which windows came, went or changed.
std::set<pid_t> readList(
    std::optional<Value>& list, Carried<const Value::Dictionary*, Reading>& readings, std::map<pid_t, int>& demanding)
{
    std::set<pid_t> changed;
    const auto before = std::exchange(list, CGWindowListCopyWindowInfo(kCGWindowListOptionAll, 0));
    if (before && list && before->array() == list->array())
        return changed;
    const auto note = [&](const Reading& reading, int count) {
        if (reading.window)
            changed.insert(reading.window->pid);
        if (reading.demanding)
            demanding[*reading.demanding] += count;
    };
    readings.begin();
    for (const Value& entry : dictionaries(list)) {
        const auto [reading, isKnown] = readings.next(entry.dictionary());
        if (isKnown)
            continue;
        reading = { entry, countedWindow(entry), demandingOwner(entry) };
        note(reading, 1);
    }
    for (const auto& [key, gone] : readings.end())
        note(gone, -1);
    std::erase_if(demanding, [](const auto& each) { return each.second <= 0; });
    return changed;
}

/// Looks which owners, those that may have become owners included, are regular, and adds those of which that changed.
void followOwners(std::map<pid_t, bool>& owners, std::set<pid_t>& changed)
{
    for (const pid_t pid : changed)
        owners.try_emplace(pid, false);
    RegularProcesses regular;
    for (auto& [pid, isRegular] : owners) {
        const bool isNow = regular.contains(pid);
        if (std::exchange(isRegular, isNow) != isNow)
            changed.insert(pid);
    }
}

void readWindows()
{
    auto& [list, readings, owners, demanding, map, readAt] = index();
    std::set<pid_t> changed = readList(list, readings, demanding);
    followOwners(owners, changed);
    readAt = NSDate::now();
    if (changed.empty())
        return;
    // Whoever holds the last reading keeps it as it was.
    if (map.use_count() > 1)
        map = std::make_shared<WindowMap>(*map);
    for (const pid_t pid : changed)
        map->erase(pid);
    std::set<pid_t> gone = changed;
    for (const auto& [key, reading] : readings.entries()) {
        if (!reading.window || !changed.contains(reading.window->pid))
            continue;
        gone.erase(reading.window->pid);
        if (owners.at(reading.window->pid))
            (*map)[reading.window->pid].push_back(*reading.window);
    }
    for (const pid_t pid : gone)
        owners.erase(pid);
}

}

namespace WindowIndex {

std::shared_ptr<const WindowMap> byPID()
{
    if (NSDate::now().timeIntervalSince(index().readAt) >= cacheSeconds)
        readWindows();
    return index().map;
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
    return index().demanding.contains(pid);
}

void invalidate()
{
    index().readAt = NSDate::distantPast();
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
