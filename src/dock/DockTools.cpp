#include "dock/DockTools.h"

#include "foundation/NSTask.h"
#include "log/Log.h"

namespace {

constexpr const char* defaultsTool = "/usr/bin/defaults";

void run(NSTask task)
{
    if (const auto error = task.launchAndReturnError())
        Log::debug("dock command failed: ", error->localizedDescription);
    else
        task.waitUntilExit();
}

}

void DockTools::defaults(std::vector<std::string> arguments)
{
    run(NSTask(defaultsTool, std::move(arguments)));
}

void DockTools::writeDock(const char* key, const char* kind, const char* value)
{
    defaults({ "write", dockDomain, key, kind, value });
}

void DockTools::deleteFromDock(const char* key)
{
    NSTask task(defaultsTool, { "delete", dockDomain, key });
    task.discardOutput();
    run(std::move(task));
}

void DockTools::restartDock()
{
    run(NSTask("/usr/bin/killall", { "Dock" }));
}
