#include "dock/LaunchRepair.h"

#include "dock/DirtyFlag.h"
#include "dock/DockPrefs.h"
#include "log/Log.h"
#include "system/Instances.h"

void DockRepair::repairIfNeeded()
{
    const auto flag = readFlag();
    if (!flag)
        return;
    if (flag->holder && Instances::contains(*flag->holder)) {
        Log::debug("repair: flag belongs to a live instance (", *flag->holder, "), leaving it alone");
        return;
    }
    Log::debug("repair: previous run did not shut down cleanly, restoring Dock");
    DockPrefs::restoreSystemDefaults();
    clearDirty();
}
