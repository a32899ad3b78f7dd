#include "bar/BarManager.h"

#include "appkit/NSScreen.h"
#include "foundation/NSNotificationCenter.h"
#include "log/Log.h"
#include "system/Displays.h"

#include <algorithm>
#include <tuple>

void BarManager::start()
{
    reconcile();
    // Never removed: the manager lives as long as the process.
    std::ignore = NSNotificationCenter::defaultCenter().addObserver(
        NSApplicationDidChangeScreenParametersNotification, [weak = weak_from_this()](const NSNotification&) {
            if (const auto self = weak.lock())
                self->reconcile();
        });
}

void BarManager::reconcile()
{
    const std::vector<DisplayInfo> displays = Displays::all();
    dropBarsWithoutDisplay(displays);
    for (const DisplayInfo& display : displays) {
        const auto found = controllers_.find(display.displayID);
        if (found != controllers_.end()) {
            found->second->update(display);
            continue;
        }
        const auto controller = std::make_shared<BarController>(display);
        controller->start();
        controllers_.emplace(display.displayID, controller);
        Log::debug("bars: added display ", display.displayID);
    }
}

void BarManager::dropBarsWithoutDisplay(const std::vector<DisplayInfo>& displays)
{
    for (auto bar = controllers_.begin(); bar != controllers_.end();) {
        const std::uint32_t displayID = bar->first;
        if (std::ranges::find(displays, displayID, &DisplayInfo::displayID) != displays.end()) {
            ++bar;
            continue;
        }
        bar->second->tearDown();
        bar = controllers_.erase(bar);
        Log::debug("bars: display ", displayID, " went away");
    }
}

std::vector<BarItem> BarManager::primaryItems() const
{
    if (controllers_.empty())
        return {};
    const auto mainScreen = NSScreen::mainScreen();
    const auto displayID = mainScreen ? Displays::displayID(*mainScreen) : std::nullopt;
    const auto found = displayID ? controllers_.find(*displayID) : controllers_.end();
    const auto& controller = found != controllers_.end() ? found->second : controllers_.begin()->second;
    return controller->currentItems();
}
