#include "dock/RepairAgent.h"

#include "dock/RepairTexts.h"
#include "dock/SupportFolders.h"
#include "foundation/NSFileManager.h"
#include "foundation/NSProcessInfo.h"
#include "foundation/NSTask.h"
#include "log/Log.h"

#include <string>
#include <vector>

namespace {

constexpr const char* label = "com.merrowen.vantry.repair";
constexpr const char* formerLabels[] = { "com.local.kelmora.repair", "com.merrowen.kelmora.repair" };
constexpr unsigned executable = 0755;

NSFileManager& files()
{
    return NSFileManager::defaultManager();
}

std::string agentsFolder()
{
    return NSHomeDirectory() + "/Library/LaunchAgents";
}

std::string agentFile(const std::string& ofLabel)
{
    return agentsFolder() + '/' + ofLabel + ".plist";
}

std::string scriptFile()
{
    return DockRepair::supportDirectory() + "/repair.sh";
}

std::string userDomain()
{
    return "gui/" + std::to_string(NSProcessInfo::userIdentifier());
}

/// That it can't be launched, or fails, means nothing.
void launchctl(std::vector<std::string> arguments)
{
    NSTask task("/bin/launchctl", std::move(arguments));
    task.discardOutput();
    if (!task.launchAndReturnError())
        task.waitUntilExit();
}

void unload(const std::string& ofLabel)
{
    launchctl({ "bootout", userDomain() + '/' + ofLabel });
}

std::optional<NSError> writeFiles()
{
    files().createDirectory(agentsFolder());
    const std::string support = DockRepair::supportDirectory();
    if (auto error = files().writeAtomically(RepairTexts::script(support), scriptFile()))
        return error;
    if (auto error = files().setPosixPermissions(scriptFile(), executable))
        return error;
    return files().writeAtomically(RepairTexts::agent(label, support), agentFile(label));
}

}

bool DockRepair::isAgentInstalled()
{
    return files().fileExists(agentFile(label));
}

void DockRepair::installAgent()
{
    if (const auto error = writeFiles()) {
        Log::debug("repair: could not install agent — ", error->localizedDescription);
        return;
    }
    unload(label);
    launchctl({ "bootstrap", userDomain(), agentFile(label) });
    Log::debug("repair: login agent installed");
}

void DockRepair::removeAgent()
{
    unload(label);
    files().removeItem(agentFile(label));
    files().removeItem(scriptFile());
    Log::debug("repair: login agent removed");
}

void DockRepair::removeLegacyAgents()
{
    for (const char* former : formerLabels) {
        if (!files().fileExists(agentFile(former)))
            continue;
        unload(former);
        files().removeItem(agentFile(former));
        Log::debug("repair: removed the old ", former, " agent");
    }
}
