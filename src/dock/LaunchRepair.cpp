#include "dock/LaunchRepair.h"

#include "appkit/NSRunningApplication.h"
#include "dock/DirtyFlag.h"
#include "dock/DockPrefs.h"
#include "foundation/NSBundle.h"
#include "foundation/NSProcessInfo.h"
#include "log/Log.h"

namespace {

/// Of this program, and alive; a number that another program has by now is no instance.
bool isInstance(pid_t pid)
{
    if (pid == NSProcessInfo::processIdentifier())
        return true;
    const auto application = NSRunningApplication::runningApplication(pid);
    return application && application->bundleIdentifier() == NSBundle::mainBundle().bundleIdentifier();
}

}

void DockRepair::repairIfNeeded()
{
    const auto flag = readFlag();
    if (!flag)
        return;
    if (flag->holder && isInstance(*flag->holder)) {
        Log::debug("repair: flag belongs to a live instance (", *flag->holder, "), leaving it alone");
        return;
    }
    Log::debug("repair: previous run did not shut down cleanly, restoring Dock");
    DockPrefs::restoreSystemDefaults();
    clearDirty();
}
