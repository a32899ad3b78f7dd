#include "dock/DockTools.h"

#include "foundation/NSTask.h"
#include "log/Log.h"

namespace {

void run(const char* tool, std::vector<std::string> arguments)
{
    NSTask task(tool, std::move(arguments));
    if (const auto error = task.launchAndReturnError())
        Log::debug("dock command failed: ", error->localizedDescription);
    else
        task.waitUntilExit();
}

}

void DockTools::defaults(std::vector<std::string> arguments)
{
    run("/usr/bin/defaults", std::move(arguments));
}

void DockTools::writeDock(const char* key, const char* kind, const char* value)
{
    defaults({ "write", dockDomain, key, kind, value });
}

void DockTools::restartDock()
{
    run("/usr/bin/killall", { "Dock" });
}
