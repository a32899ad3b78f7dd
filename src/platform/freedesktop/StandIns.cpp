#include "freedesktop/StandIns.h"

#include "base/Executable.h"

#include <unistd.h>

#include <algorithm>

namespace freedesktop::StandIns {

using host::ActivationPolicy;
using host::Process;

Process dockProcess(const std::shared_ptr<const IconSource>& icon)
{
    return { dock, ActivationPolicy::accessory, "com.apple.dock", {}, "Dock", icon, false };
}

Process ownProcess(pid_t pid, const std::shared_ptr<const IconSource>& icon)
{
    return { pid, ActivationPolicy::accessory, "com.merrowen.vantry", executableOf(pid), "Vantry", icon, false };
}

std::shared_ptr<const Process> instance(pid_t pid, const std::shared_ptr<const IconSource>& icon)
{
    const std::string program = executableOf(pid);
    const bool isInstance = !program.empty() && program == executableOf(::getpid());
    return isInstance ? std::make_shared<const Process>(ownProcess(pid, icon)) : nullptr;
}

pid_t addFinder(std::vector<Process>& processes, InstalledApplications& applications)
{
    const auto handler = applications.folderHandler();
    if (!handler)
        return 0;
    const auto running = std::ranges::find_if(
        processes, [](const Process& process) { return process.bundleIdentifier == finderIdentifier; });
    if (running == processes.end()) {
        processes.insert(processes.begin(),
            { finder, ActivationPolicy::regular, finderIdentifier, handler->bundlePath, handler->entry.name,
                applications.iconOf(handler), true });
    } else {
        running->policy = ActivationPolicy::regular;
        std::rotate(processes.begin(), running, std::next(running));
    }
    return processes.front().pid;
}

}
