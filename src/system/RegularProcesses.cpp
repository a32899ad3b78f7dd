#include "system/RegularProcesses.h"

#include "appkit/NSRunningApplication.h"

bool RegularProcesses::contains(pid_t pid)
{
    const auto [place, isNew] = known_.try_emplace(pid, false);
    if (isNew) {
        const auto application = NSRunningApplication::runningApplication(pid);
        place->second = application && application->activationPolicy() == NSApplicationActivationPolicyRegular;
    }
    return place->second;
}
