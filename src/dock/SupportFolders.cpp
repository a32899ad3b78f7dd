#include "dock/SupportFolders.h"

#include "foundation/NSFileManager.h"

namespace {

std::string made(const char* name)
{
    auto& files = NSFileManager::defaultManager();
    const std::string folder = files.applicationSupportDirectory() + '/' + name;
    files.createDirectory(folder);
    return folder;
}

}

std::string DockRepair::supportDirectory()
{
    return made("Vantry");
}

std::string DockRepair::recoveryDirectory()
{
    return made("Vantry-Recovery");
}
