#include "dock/Uninstaller.h"

#include "appkit/NSWorkspace.h"
#include "dock/DockPrefs.h"
#include "dock/LoginItem.h"
#include "dock/RepairAgent.h"
#include "foundation/NSBundle.h"
#include "foundation/NSFileManager.h"
#include "foundation/NSUserDefaults.h"
#include "log/Log.h"
#include "services/SMAppService.h"
#include "settings/Settings.h"

namespace Uninstaller {
namespace {

/// Those of the program's former name included.
constexpr const char* supportFolders[] = { "Vantry", "Vantry-Recovery", "Kelmora", "Kelmora-Recovery" };

void removeSupportFiles()
{
    auto& files = NSFileManager::defaultManager();
    for (const char* name : supportFolders)
        files.removeItem(files.applicationSupportDirectory() + '/' + name);
}

void removeSettings()
{
    const auto identifier = NSBundle::mainBundle().bundleIdentifier();
    if (!identifier)
        return;
    NSUserDefaults::removePersistentDomainForName(*identifier);
    NSUserDefaults::standard().synchronize();
}

void revealInFinder()
{
    NSWorkspace::sharedWorkspace().activateFileViewerSelectingURLs({ NSBundle::mainBundle().bundleURL() });
}

}

std::function<void()> endProcess;

std::string summary()
{
    const struct {
        bool holds;
        const char* line;
    } lines[] = {
        { Settings::dockMigrated(), "\u2022 Your Dock apps will be put back" },
        { Settings::manageDock(), "\u2022 Dock size and auto-hide will be restored" },
        { !DockPrefs::missionControlGestureEnabled(), "\u2022 The Mission Control gesture will be re-enabled" },
        { Settings::launchAtLogin(), "\u2022 Launch at login will be removed" },
        { true, "\u2022 Vantry's settings will be deleted" },
    };
    std::string text;
    for (const auto& [holds, line] : lines) {
        if (holds)
            text += (text.empty() ? "" : "\n") + std::string(line);
    }
    return text;
}

void run(bool revealingInFinder)
{
    Log::debug("uninstall: starting");
    DockPrefs::restoreSystemDefaults();
    if (Settings::launchAtLogin())
        SMAppService::mainAppService().unregisterAndReturnError();
    DockRepair::removeAgent();
    // After what they are needed for: the backup, and the agent's script.
    removeSupportFiles();
    removeSettings();
    if (revealingInFinder)
        revealInFinder();
    Log::debug("uninstall: done");
    if (endProcess)
        endProcess();
}

}
