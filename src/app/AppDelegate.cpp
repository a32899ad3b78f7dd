#include "app/AppDelegate.h"

#include "app/RunMode.h"
#include "controls/BarVisibility.h"
#include "controls/Shortcuts.h"
#include "dock/DockPrefs.h"
#include "dock/DriftWatch.h"
#include "dock/LaunchRepair.h"
#include "dock/LoginItem.h"
#include "dock/RepairAgent.h"
#include "dock/Uninstaller.h"
#include "log/Log.h"
#include "look/Metrics.h"
#include "model/AppHistory.h"
#include "settings/Migration.h"
#include "settings/Settings.h"
#include "system/Instances.h"
#include "system/SpaceSwitcher.h"
#include "tamer/WindowTamer.h"

void AppDelegate::applicationDidFinishLaunching()
{
    SpaceSwitcher::ensureAccessibility();
    Uninstaller::endProcess = [this] {
        isProbeRun_ = true;
        application_.terminate();
    };
    if (const auto mode = RunMode::requested()) {
        isProbeRun_ = true;
        application_.setActivationPolicy(NSApplicationActivationPolicyProhibited);
        mode->start([this] { application_.terminate(); });
        return;
    }
    if (Instances::anotherRuns()) {
        Log::debug("another instance is already running, leaving it to it");
        isProbeRun_ = true;
        application_.terminate();
        return;
    }
    start();
}

void AppDelegate::applicationWillTerminate()
{
    if (isProbeRun_ || !Settings::restoreOnQuit())
        return;
    if (!Settings::manageDock() && !Settings::dockMigrated() && DockPrefs::missionControlGestureEnabled())
        return;
    Log::debug("quitting: restoring system settings");
    DockPrefs::restoreSystemDefaults();
}

/// What a crashed run has left is undone before this one changes anything.
void AppDelegate::takeTheDocksPlace()
{
    DockRepair::removeLegacyAgents();
    DockRepair::repairIfNeeded();
    LoginItem::reconcile();
    if (!DockPrefs::missionControlGestureEnabled()) {
        Log::debug("gesture: re-enabling swipe-up, the setting no longer exists");
        DockPrefs::setMissionControlGesture(true);
    }
    const double barHeight = Metrics::current().barHeight();
    if (Settings::manageDock())
        DockPrefs::keepDockBehindBar(barHeight);
    DockPrefs::startDriftWatch(barHeight);
}

void AppDelegate::start()
{
    Settings::migrateLegacyState();
    Settings::followOtherPrograms();
    takeTheDocksPlace();
    AppHistory::start();
    manager_ = std::make_shared<BarManager>();
    manager_->start();
    WindowTamer::start();
    Shortcuts::itemsProvider = [weak = std::weak_ptr(manager_)] {
        const auto manager = weak.lock();
        return manager ? manager->primaryItems() : std::vector<BarItem>();
    };
    Shortcuts::start();
    statusItem_ = std::make_unique<StatusItemController>(BarVisibility::toggle);
    Log::debug("launched");
}
