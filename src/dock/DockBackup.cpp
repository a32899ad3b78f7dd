#include "dock/DockBackup.h"

#include "dock/DockTools.h"
#include "dock/SupportFolders.h"
#include "foundation/NSFileManager.h"
#include "log/Log.h"

namespace {

NSFileManager& files()
{
    return NSFileManager::defaultManager();
}

std::string primary()
{
    return DockRepair::supportDirectory() + "/dock-backup.plist";
}

std::string safetyCopy()
{
    return DockRepair::recoveryDirectory() + "/dock-backup.plist";
}

void makeSafetyCopy()
{
    if (!files().fileExists(primary()))
        return;
    files().removeItem(safetyCopy());
    files().copyItem(primary(), safetyCopy());
}

}

void DockPrefs::captureBackupIfNeeded()
{
    if (files().fileExists(primary()))
        return;
    DockTools::defaults({ "export", DockTools::dockDomain, primary() });
    makeSafetyCopy();
    Log::debug("dock: captured the original settings before changing anything");
}

std::optional<std::string> DockPrefs::usableBackup()
{
    const std::string first = primary();
    const std::string second = safetyCopy();
    if (files().fileExists(first))
        return first;
    if (files().fileExists(second))
        return second;
    return std::nullopt;
}
