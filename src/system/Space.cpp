#include "system/Space.h"

#include <algorithm>

std::vector<pid_t> Space::appPIDs() const
{
    if (ownerPID)
        return { *ownerPID };

    std::vector<pid_t> pids;
    for (const SpaceWindow& window : windows)
        if (std::ranges::find(pids, window.pid) == pids.end())
            pids.push_back(window.pid);
    return pids;
}
