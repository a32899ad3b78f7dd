#include "system/DockBadges.h"

#include "appkit/NSRunningApplication.h"
#include "base/PerDesktop.h"
#include "base/Value.h"
#include "foundation/NSDate.h"
#include "log/Log.h"
#include "settings/Settings.h"
#include "system/Attribute.h"

#include <optional>

namespace {

constexpr double secondsBetweenReadings = 1.0;
constexpr double messagingTimeout = 0.5;

struct Reading {
    DockBadges::Map badges;
    NSDate begun = NSDate::distantPast();
};

Reading& last()
{
    return perDesktop<Reading>();
}

void addBadge(const AXUIElement& tile, DockBadges::Map& badges)
{
    auto title = Attribute::text(tile, "AXTitle");
    auto label = Attribute::text(tile, "AXStatusLabel");
    if (title && label && !label->empty())
        badges.insert_or_assign(std::move(*title), std::move(*label));
}

/// Absent when the Dock doesn't run or doesn't answer.
std::optional<DockBadges::Map> readDock()
{
    const auto docks = NSRunningApplication::runningApplications("com.apple.dock");
    if (docks.empty())
        return std::nullopt;
    const AXUIElement dock = Attribute::application(docks.front().processIdentifier(), messagingTimeout);
    const auto lists = Attribute::elements(dock, "AXChildren");
    if (!lists)
        return std::nullopt;

    DockBadges::Map badges;
    for (const AXUIElement& list : *lists)
        if (const auto tiles = Attribute::elements(list, "AXChildren"))
            for (const AXUIElement& tile : *tiles)
                addBadge(tile, badges);
    return badges;
}

void logBadges(const DockBadges::Map& badges)
{
    if (badges.empty() || !Log::enabled())
        return;
    Value::Dictionary dictionary;
    for (const auto& [name, badge] : badges)
        dictionary.set(name, badge);
    Log::debug("badges: ", description(dictionary));
}

}

namespace DockBadges {

Map current()
{
    if (!Settings::showBadges())
        return {};

    const NSDate now = NSDate::now();
    if (now.timeIntervalSince(last().begun) < secondsBetweenReadings)
        return last().badges;
    // Ahead of the reading, so that a Dock that doesn't answer is let alone for as long as any other.
    last().begun = now;
    if (auto badges = readDock()) {
        last().badges = std::move(*badges);
        logBadges(last().badges);
    }
    return last().badges;
}
}
