#include "appkit/NSRunningApplication.h"
#include "foundation/NSString.h"
#include "model/Entries.h"
#include "model/Items.h"
#include "selftest/Checks.h"
#include "selftest/Groups.h"
#include "settings/Settings.h"
#include "system/WindowIndex.h"

#include <algorithm>
#include <numeric>

namespace {

using SelfTest::check;
using SelfTest::compared;
using SelfTest::skip;

constexpr const char* finder = "com.apple.finder";
/// Buttons enough for all.
constexpr int capacity = 40;

/// What all bars together show.
std::vector<BarItem> entries(int room = capacity)
{
    return DockModel::entries(room, std::nullopt);
}

std::size_t entryCount(WindowGrouping how, int room = capacity)
{
    Settings::grouping.set(how);
    return entries(room).size();
}

bool holdsFinder(const std::vector<BarItem>& items)
{
    return std::ranges::find(items, finder, &BarItem::bundleID) != items.end();
}

bool isSorted(const std::vector<BarItem>& items)
{
    std::vector<std::string> names;
    for (const BarItem& item : items)
        if (!item.isLauncher)
            names.push_back(item.name);
    return std::ranges::is_sorted(names, [](const std::string& a, const std::string& b) {
        return localizedCaseInsensitiveCompare(a, b) == NSComparisonResult::orderedAscending;
    });
}

/// By process, the numbers of its windows.
std::map<pid_t, std::vector<std::uint32_t>> numbers(const WindowMap& map)
{
    std::map<pid_t, std::vector<std::uint32_t>> all;
    for (const auto& [pid, windows] : map)
        std::ranges::transform(windows, std::back_inserter(all[pid]), &WindowEntry::id);
    return all;
}

}

void SelfTest::finderButton()
{
    Settings::showFinderButton.set(true);
    check("Finder excluded from the app list when it has its own button", !holdsFinder(DockModel::items()));
    if (NSRunningApplication::runningApplications(finder).empty())
        return skip("Finder is not running");
    Settings::showFinderButton.set(false);
    check("Finder appears in the app list when its button is off", holdsFinder(DockModel::items()));
    Settings::showFinderButton.set(true);
    check("a Finder BarItem can always be built", DockModel::finderItem().has_value());
}

void SelfTest::ordering()
{
    Settings::grouping.set(WindowGrouping::always);
    Settings::appOrder.set(AppOrder::alphabetical);
    check("alphabetical order is actually sorted", isSorted(entries()));
    Settings::appOrder.set(AppOrder::dock);
    check("dock order returns a non-empty list", !entries().empty());
    for (const AppOrder order : allCases<AppOrder>()) {
        Settings::appOrder.set(order);
        const auto items = entries();
        if (std::ranges::find(items, true, &BarItem::isLauncher) == items.end())
            skip("no launcher pinned");
        else
            check("launcher stays first under " + std::string(rawValue(order)), items.front().isLauncher);
    }
    Settings::appOrder.set(AppOrder::dock);
}

void SelfTest::grouping()
{
    const auto apps = entryCount(WindowGrouping::always);
    const auto windows = entryCount(WindowGrouping::never);
    check(compared("one-per-window is never fewer than one-per-app", static_cast<double>(apps), "->",
              static_cast<double>(windows)),
        windows >= apps);
    check("automatic sits between the two", entryCount(WindowGrouping::automatic) >= apps);
    const auto full = entryCount(WindowGrouping::automatic, 1);
    check(compared(
              "automatic collapses when the bar is full", static_cast<double>(full), "==", static_cast<double>(apps)),
        full == apps);
    Settings::grouping.set(WindowGrouping::always);
}

void SelfTest::windowIndexing()
{
    const auto windows = WindowIndex::all();
    check("window index returns something", !windows.empty());
    const auto orphans
        = std::ranges::count_if(windows, [](const WindowEntry& window) { return window.spaceIDs.empty(); });
    check("every counted window belongs to a Space (" + std::to_string(orphans) + " orphans)", orphans == 0);
    check("no sub-threshold windows counted", std::ranges::none_of(windows, [](const WindowEntry& window) {
        return window.bounds.width < 200 || window.bounds.height < 150;
    }));

    WindowIndex::byPID();
    const auto cached = numbers(*WindowIndex::byPID());
    WindowIndex::invalidate();
    const auto fresh = numbers(*WindowIndex::byPID());
    check("cached window map matches a fresh one", cached == fresh);
    WindowIndex::invalidate();
    check("invalidating rebuilds without changing the answer", numbers(*WindowIndex::byPID()) == fresh);

    const auto grouped = std::accumulate(fresh.begin(), fresh.end(), std::size_t { 0 },
        [](std::size_t sum, const auto& each) { return sum + each.second.size(); });
    const auto flat = WindowIndex::all().size();
    check(compared("grouped and flat listings agree", static_cast<double>(grouped), "==", static_cast<double>(flat)),
        grouped == flat);
}

void SelfTest::spaceFiltering()
{
    Settings::currentSpaceOnly.set(false);
    const auto everywhere = entries().size();
    Settings::currentSpaceOnly.set(true);
    const auto here = entries().size();
    check(compared(
              "this-desktop-only never adds buttons", static_cast<double>(everywhere), "->", static_cast<double>(here)),
        here <= everywhere);
    Settings::currentSpaceOnly.set(false);
}
