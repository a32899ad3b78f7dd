#include "dock/DockPrefs.h"

#include "dock/DirtyFlag.h"
#include "dock/DockBackup.h"
#include "dock/DockTools.h"
#include "dock/RepairAgent.h"
#include "foundation/CFPreferences.h"
#include "foundation/NSUserDefaults.h"
#include "log/Log.h"
#include "model/PinnedApps.h"
#include "settings/Settings.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

using DockTools::dockDomain;

constexpr std::array trackpadDomains { "com.apple.AppleMultitouchTrackpad",
    "com.apple.driver.AppleBluetoothMultitouch.trackpad" };
constexpr std::array gestureKeys { "TrackpadThreeFingerVertSwipeGesture", "TrackpadFourFingerVertSwipeGesture" };

/// Whatever goes wrong after this can be undone.
void prepareForChange()
{
    DockPrefs::captureBackupIfNeeded();
    DockRepair::markDirty();
    if (!DockRepair::isAgentInstalled())
        DockRepair::installAgent();
}

/// The paths are the keys of the names, so each application is there once.
void pinOnBar(const std::vector<DockModel::PinnedApp>& apps)
{
    auto paths = Settings::extraPinnedPaths();
    auto names = Settings::pinnedNames();
    for (const auto& [url, name] : apps) {
        const std::string path = url.standardizedPath();
        names.insert_or_assign(path, name);
        if (std::ranges::find(paths, path) == paths.end())
            paths.push_back(path);
    }
    Settings::pinnedNames.set(names);
    Settings::extraPinnedPaths.set(paths);
}

}

void DockPrefs::keepDockBehindBar(double barHeight)
{
    prepareForChange();
    DockTools::writeDock("orientation", "-string", "bottom");
    DockTools::writeDock("autohide", "-bool", "true");
    DockTools::writeDock("magnification", "-bool", "false");
    DockTools::writeDock("tilesize", "-int", "1");
    DockTools::writeDock("autohide-time-modifier", "-float", "0");
    DockTools::restartDock();
    Log::debug("dock: sized to 1 to sit behind a ", static_cast<int>(barHeight), "pt bar");
}

void DockPrefs::applyRecommended()
{
    prepareForChange();
    DockTools::writeDock("orientation", "-string", "bottom");
    DockTools::writeDock("autohide", "-bool", "true");
    DockTools::writeDock("tilesize", "-int", "36");
    DockTools::restartDock();
    Log::debug("dock: applied recommended setup");
}

void DockPrefs::migrateToTaskbar()
{
    const auto apps = DockModel::pinnedApps();
    if (apps.empty()) {
        Log::debug("dock: nothing to migrate");
        return;
    }
    prepareForChange();
    // On the bar before they leave the Dock: a crash between the two leaves them in both places, never in neither.
    pinOnBar(apps);
    DockTools::defaults({ "write", dockDomain, "persistent-apps", "-array" });
    DockTools::restartDock();
    Settings::dockMigrated.set(true);
    Log::debug("dock: migrated ", apps.size(), " apps to the taskbar");
}

void DockPrefs::restoreDock()
{
    const auto backup = usableBackup();
    if (!backup)
        return;
    for (const char* key :
        { "tilesize", "magnification", "autohide", "autohide-time-modifier", "autohide-delay", "orientation" })
        DockTools::deleteFromDock(key);
    DockTools::defaults({ "import", dockDomain, *backup });
    DockTools::restartDock();
    Settings::dockMigrated.set(false);
    DockRepair::clearDirty();
    Log::debug("dock: restored from backup");
}

void DockPrefs::restoreSystemDefaults()
{
    if (hasBackup()) {
        restoreDock();
    } else {
        DockTools::writeDock("tilesize", "-int", "48");
        DockTools::deleteFromDock("autohide-delay");
        DockTools::restartDock();
    }
    setMissionControlGesture(true);
    DockRepair::clearDirty();
    Log::debug("system settings restored");
}

bool DockPrefs::isBehindBar()
{
    CFPreferencesAppSynchronize(dockDomain);
    const auto size = CFPreferencesCopyAppValue("tilesize", dockDomain);
    const auto hides = CFPreferencesCopyAppValue("autohide", dockDomain);
    return size && size->integer() == 1 && hides && hides->boolean() == true;
}

bool DockPrefs::missionControlGestureEnabled()
{
    const auto trackpad = NSUserDefaults::initWithSuiteName(trackpadDomains.front());
    return !trackpad || trackpad->integerForKey(gestureKeys.front()) != 0;
}

void DockPrefs::setMissionControlGesture(bool enabled)
{
    if (!enabled)
        prepareForChange();
    for (const char* domain : trackpadDomains)
        for (const char* key : gestureKeys)
            DockTools::defaults({ "write", domain, key, "-int", enabled ? "2" : "0" });
    Log::debug("mission control gesture -> ", enabled ? "true" : "false");
}
