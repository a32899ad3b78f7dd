#include "model/Entries.h"

#include "log/Log.h"
#include "model/Items.h"
#include "settings/Settings.h"
#include "system/DockBadges.h"
#include "system/SpaceScanner.h"
#include "system/WindowIndex.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace {

using Windows = std::vector<WindowEntry>;

/// The counted windows of the item's process; none while it doesn't run.
const Windows& windowsOf(const BarItem& item, const WindowMap& map)
{
    static const Windows none;
    const auto place = item.pid ? map.find(*item.pid) : map.end();
    return place == map.end() ? none : place->second;
}

/// Whether a filter has no say on the item: it stands for something to launch rather than for windows.
bool isAlwaysShown(const BarItem& item)
{
    return item.isLauncher || !item.isRunning();
}

void keepWhatIsOnScreen(std::vector<BarItem>& items, const NSScreen& barScreen, const WindowMap& map)
{
    const auto screens = NSScreen::screens();
    if (screens.size() < 2 || Settings::multiDisplayMode() != MultiDisplayMode::perScreen)
        return;
    const bool isPrimaryBar = barScreen == screens.front();
    std::erase_if(items, [&](const BarItem& item) {
        if (isAlwaysShown(item))
            return false;
        const Windows& windows = windowsOf(item, map);
        if (windows.empty())
            return !isPrimaryBar;
        return std::ranges::none_of(windows,
            [&](const WindowEntry& window) { return Displays::screenContaining(window.bounds, screens) == barScreen; });
    });
}

void keepWhatIsOnSpace(std::vector<BarItem>& items, const std::optional<DisplayInfo>& display, const WindowMap& map)
{
    if (!Settings::currentSpaceOnly())
        return;
    const std::uint64_t active = SpaceScanner::activeSpaceIDForDisplay(display ? display->cgsIdentifier : std::nullopt);
    std::erase_if(items, [&](const BarItem& item) {
        return !isAlwaysShown(item) && std::ranges::none_of(windowsOf(item, map), [&](const WindowEntry& window) {
            return std::ranges::find(window.spaceIDs, active) != window.spaceIDs.end();
        });
    });
}

void annotate(std::vector<BarItem>& items, const DockBadges::Map& badges, const WindowMap& map)
{
    for (BarItem& item : items) {
        if (const auto badge = badges.find(item.name); badge != badges.end())
            item.badge = badge->second;
        item.windowCount = static_cast<int>(windowsOf(item, map).size());
        item.demandsAttention = item.pid && WindowIndex::demandsAttention(*item.pid);
    }
}

void logCounts(const std::vector<BarItem>& items)
{
    if (!Log::enabled())
        return;
    std::string counts;
    for (const BarItem& item : items)
        if (item.isRunning())
            counts += (counts.empty() ? "" : " ") + item.name + "=" + std::to_string(item.windowCount);
    Log::debug("counts: ", counts);
}

BarItem windowItem(const BarItem& item, const WindowEntry& window, std::optional<std::uint32_t> focused)
{
    BarItem one = item;
    if (!window.title.empty())
        one.name = window.title;
    one.isFrontmost = item.isFrontmost && focused == window.id;
    one.windowID = window.id;
    one.badge = std::nullopt;
    one.windowCount = 0;
    return one;
}

std::vector<BarItem> grouped(std::vector<BarItem> items, int capacity)
{
    const WindowGrouping grouping = Settings::grouping();
    if (grouping == WindowGrouping::always)
        return items;
    auto windows = DockModel::expand(items);
    if (grouping == WindowGrouping::automatic && windows.size() > static_cast<std::size_t>(capacity))
        return items;
    return windows;
}

}

std::vector<BarItem> DockModel::entries(int capacity, const std::optional<DisplayInfo>& display)
{
    const auto badges = DockBadges::current();
    const auto windows = WindowIndex::byPID();
    auto items = DockModel::items();
    if (display)
        keepWhatIsOnScreen(items, display->screen, *windows);
    keepWhatIsOnSpace(items, display, *windows);
    annotate(items, badges, *windows);
    logCounts(items);
    return grouped(std::move(items), capacity);
}

std::vector<BarItem> DockModel::expand(const std::vector<BarItem>& items)
{
    const auto map = WindowIndex::byPID();
    const auto focused = WindowIndex::focusedWindowID();
    std::vector<BarItem> expanded;
    expanded.reserve(std::accumulate(items.begin(), items.end(), items.size(),
        [&](std::size_t sum, const BarItem& item) { return sum + windowsOf(item, *map).size(); }));
    for (const BarItem& item : items) {
        const Windows& windows = windowsOf(item, *map);
        if (item.isLauncher || windows.empty()) {
            expanded.push_back(item);
            continue;
        }
        // Where it is a window without a button, each of the others tells of it.
        const bool isKnown = std::ranges::any_of(windows, &WindowEntry::demandsAttention);
        for (const WindowEntry& window : windows) {
            expanded.push_back(windowItem(item, window, focused));
            if (isKnown)
                expanded.back().demandsAttention = window.demandsAttention;
        }
    }
    return expanded;
}
