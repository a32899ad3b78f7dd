#include "app/AppDelegate.h"

#include "app/RunMode.h"
#include "controls/Shortcuts.h"
#include "foundation/NSBundle.h"
#include "foundation/NSProcessInfo.h"
#include "log/Log.h"
#include "model/AppHistory.h"
#include "settings/Settings.h"
#include "system/SpaceSwitcher.h"
#include "tamer/WindowTamer.h"

#include <algorithm>

namespace {

bool anotherInstanceRuns()
{
    const std::string identifier = NSBundle::mainBundle().bundleIdentifier().value_or("");
    const auto instances = NSRunningApplication::runningApplications(identifier);
    return std::any_of(instances.begin(), instances.end(), [](const NSRunningApplication& instance) {
        return instance.processIdentifier() != NSProcessInfo::processIdentifier();
    });
}

}

void AppDelegate::applicationDidFinishLaunching()
{
    SpaceSwitcher::ensureAccessibility();
    if (const auto mode = RunMode::requested()) {
        mode->schedule([this] { application_.terminate(); });
        return;
    }
    if (anotherInstanceRuns()) {
        Log::debug("another instance is already running, leaving it to it");
        application_.terminate();
        return;
    }
    start();
}

void AppDelegate::start()
{
    Settings::followOtherPrograms();
    AppHistory::start();
    manager_ = std::make_shared<BarManager>();
    manager_->start();
    WindowTamer::start();
    Shortcuts::itemsProvider = [weak = std::weak_ptr(manager_)] {
        const auto manager = weak.lock();
        return manager ? manager->primaryItems() : std::vector<BarItem>();
    };
    Shortcuts::start();
    Log::debug("launched");
}
