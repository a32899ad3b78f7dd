#include "controls/Shortcuts.h"
#include "controls/Trash.h"
#include "dock/DirtyFlag.h"
#include "dock/DockBackup.h"
#include "dock/LaunchRepair.h"
#include "dock/LoginItem.h"
#include "dock/SupportFolders.h"
#include "dock/Uninstaller.h"
#include "foundation/NSFileManager.h"
#include "foundation/NSString.h"
#include "model/Entries.h"
#include "model/Items.h"
#include "search/AppCatalog.h"
#include "search/Search.h"
#include "selftest/Checks.h"
#include "selftest/Groups.h"
#include "settings/Settings.h"
#include "system/Displays.h"
#include "system/Instances.h"
#include "system/SpaceScanner.h"
#include "system/WindowIndex.h"
#include "tamer/TargetGeometry.h"

#include <algorithm>

namespace {

using SelfTest::check;
using SelfTest::skip;

constexpr int capacity = 40;

void checkWindowSearch()
{
    const bool available = WindowIndex::titlesAvailable();
    SelfTest::info(std::string("window titles available: ") + (available ? "true" : "false"));
    if (!available)
        return skip("window search needs Screen Recording");
    auto windows = WindowIndex::all();
    std::erase_if(windows, [](const WindowEntry& window) { return stringByTrimmingWhitespaces(window.title).empty(); });
    check("window search has titles to match on (" + std::to_string(windows.size()) + ")", !windows.empty());
    const std::string title = windows.empty() ? "" : windows.front().title;
    const auto hits = Search::hits(title);
    const bool isFound = std::ranges::find(hits, title, &SearchHit::title) != hits.end();
    check("window search finds an open window", isFound);
}

/// By the name that it goes by here.
void checkFinderSearch()
{
    const auto item = DockModel::finderItem();
    if (!item)
        return skip("Finder is not running");
    check("app search finds Finder", !AppCatalog::search(item->name).empty());
}

/// A flag that another instance has raised is that one's life insurance, and isn't touched.
void checkDirtyFlag()
{
    const auto before = DockRepair::readFlag();
    if (before && before->holder && DockRepair::isDirty() && Instances::contains(*before->holder))
        return skip("the dirty flag belongs to another instance, which is running");
    DockRepair::clearDirty();
    DockRepair::markDirty();
    check("dirty flag can be raised", DockRepair::isDirty());
    DockRepair::repairIfNeeded();
    check("repair leaves a live instance's flag alone", DockRepair::isDirty());
    DockRepair::clearDirty();
    check("dirty flag can be cleared", !DockRepair::isDirty());
    if (before)
        DockRepair::raiseAgain(*before);
}

void checkTap()
{
    Shortcuts::start();
    if (Instances::anotherRuns() && !Shortcuts::takenKeys().empty())
        return skip("the keys belong to another instance, which is running");
    check("event tap is live", Shortcuts::isTapEnabled());
    Shortcuts::reenableTap("self-test");
    check("event tap survives being re-armed", Shortcuts::isTapEnabled());
}

/// Wanting to manage the Dock is no change yet: the flag is raised before the first.
void checkBackup()
{
    const bool isManaged = Settings::manageDock() && DockRepair::isDirty();
    if (isManaged || Settings::dockMigrated())
        check("a Dock backup exists whenever the Dock has been changed", DockPrefs::hasBackup());
    else
        skip("Dock has not been managed on this machine");
}

bool isWritable(const std::string& folder)
{
    NSFileManager& files = NSFileManager::defaultManager();
    const std::string probe = folder + "/self-test";
    const bool isWritten = !files.writeAtomically("", probe) && files.fileExists(probe);
    files.removeItem(probe);
    return isWritten;
}

std::string nameOf(const DisplayInfo& display)
{
    return "display " + std::to_string(display.displayID);
}

void checkDisplay(const DisplayInfo& display)
{
    check(nameOf(display) + " resolves a CGS identifier", display.cgsIdentifier.has_value());
    check(nameOf(display) + " reports an active Space",
        SpaceScanner::activeSpaceIDForDisplay(display.cgsIdentifier) != 0);
    check(nameOf(display) + " round-trips to its screen", Displays::screenFor(display.displayID) == display.screen);
}

void checkEntries(const DisplayInfo& display)
{
    const auto scoped = DockModel::entries(capacity, display).size();
    const auto all = DockModel::entries(capacity, std::nullopt).size();
    check(SelfTest::compared(
              "per-display entries never exceed unscoped", static_cast<double>(scoped), "<=", static_cast<double>(all)),
        scoped <= all);
}

void checkTarget(const DisplayInfo& display)
{
    const auto target = WindowTamer::targetRect(display.screen);
    check("target rect fits inside its screen",
        target && target->width <= display.frame().width && target->height < display.frame().height);
}

}

void SelfTest::supportingTypes()
{
    check("uninstall summary is populated", !Uninstaller::summary().empty());
    Trash::isEmpty();
    check("trash state is readable", true);
    check("app catalogue found applications", !AppCatalog::all().empty());
    checkFinderSearch();
    check("empty query returns no hits", Search::hits("").empty());
    check("active space id is non-zero", SpaceScanner::activeSpaceID() != 0);
    check("space scan returns spaces", !SpaceScanner::scan().empty());
    checkWindowSearch();
    for (const bool shows : { false, true }) {
        Settings::showWindowPreviews.set(shows);
        check(std::string("showWindowPreviews round-trips ") + (shows ? "true" : "false"),
            Settings::showWindowPreviews() == shows);
    }
}

void SelfTest::crashSafety()
{
    checkDirtyFlag();
    checkTap();
    LoginItem::reconcile();
    check("login item path is reconciled without error", true);
    check("support directory is writable", isWritable(DockRepair::supportDirectory()));
    checkBackup();
}

void SelfTest::displays()
{
    const auto all = Displays::all();
    check("every NSScreen resolves to a display", all.size() == NSScreen::screens().size());
    check("at least one display found", !all.empty());
    std::ranges::for_each(all, checkDisplay);
    const auto active = SpaceScanner::activeSpacesByDisplay();
    check("active spaces are reported per display (" + std::to_string(active.size()) + ")", !active.empty());

    const auto windows = WindowIndex::all();
    const auto homeless = std::ranges::count_if(
        windows, [](const WindowEntry& window) { return !Displays::screenContaining(window.bounds); });
    check("every window maps to a screen (" + std::to_string(homeless) + " homeless)", homeless == 0);
    checkRoundTrips<MultiDisplayMode>("multiDisplayMode", Settings::multiDisplayMode);
    Settings::multiDisplayMode.set(MultiDisplayMode::perScreen);
    std::ranges::for_each(all, checkEntries);
    std::ranges::for_each(all, checkTarget);
}
