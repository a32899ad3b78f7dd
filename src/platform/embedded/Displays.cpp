#include "embedded/Displays.h"

#include "embedded/World.h"

namespace embedded {

const std::vector<host::Display>& Displays::all()
{
    std::vector<host::Display> now;
    for (const Screen& screen : world_.screens().all())
        now.push_back({ screen.number, screen.uuid, screen.frame, world_.visibleFrame(screen) });
    // Left alone while it is right, for callers that still walk through it.
    if (all_ != now)
        all_ = std::move(now);
    return all_;
}

std::optional<std::size_t> Displays::main()
{
    return world_.mainScreen();
}

}
