#include "embedded/Badges.h"

#include "base/Clock.h"
#include "base/RunLoop.h"
#include "embedded/CallLog.h"
#include "embedded/World.h"

#include <chrono>
#include <thread>

namespace embedded {

std::optional<pid_t> Badges::owner()
{
    const RunningProcess* dock = world_.processNamed(dockIdentifier);
    return dock ? std::optional(dock->pid()) : std::nullopt;
}

std::optional<std::vector<host::Badge>> Badges::read(double timeout)
{
    const RunningProcess* dock = world_.processNamed(dockIdentifier);
    const bool hangs = dock && dock->faults.hangs;
    log_.add({ .pid = dock ? dock->pid() : 0, .name = "badges", .value = {}, .heldUp = hangs ? timeout : 0 });
    if (hangs && !RunLoop::main().clock().isManual())
        std::this_thread::sleep_for(std::chrono::duration<double>(timeout));
    if (!dock || hangs || !world_.isAccessibilityPermitted())
        return std::nullopt;

    std::vector<host::Badge> tiles;
    for (const Scenario::Tile& tile : world_.dock().tiles()) {
        const auto badge = world_.dock().badges.find(tile.label);
        tiles.push_back({ tile.label, badge == world_.dock().badges.end() ? std::string() : badge->second });
    }
    return tiles;
}

}
