#include "tamer/WindowTamer.h"

#include "foundation/NSTimer.h"
#include "settings/Settings.h"
#include "tamer/AlertStage.h"
#include "tamer/FocusedStage.h"
#include "tamer/Placement.h"
#include "windowserver/CGWindow.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace {

constexpr double tickInterval = 0.5;
/// While nothing happens a tick may wait for the bars to refresh, and the program sleeps through.
constexpr double idleTolerance = 1.0;

std::shared_ptr<NSTimer> timer;

/// All that decides what a tick does.
struct Situation {
    std::optional<std::uint64_t> changes;
    std::uint64_t requests = 0;
    BarEdge edge = BarEdge::bottom;
    BarSize size = BarSize::large;
    bool isEnabled = false;

    static Situation now()
    {
        return { CGSGetChangeCount(CGSMainConnectionID()), Placement::requestCount(), Settings::barEdge(),
            Settings::barSize(), WindowTamer::isEnabled() };
    }
    bool operator==(const Situation&) const = default;
};

Situation last;
int ticksWithoutChange = 0;

/// Mostly a tick finds everything as the ones before it did, which had nothing to ask of anybody. Then neither has this
/// one, and the program sleeps on. It takes two of them, as the first may have read an index from before a change.
bool hasNothingToDo()
{
    const Situation now = Situation::now();
    const bool isSame = now.changes && now == last;
    last = now;
    ticksWithoutChange = isSame ? ticksWithoutChange + 1 : 0;
    return ticksWithoutChange >= 2;
}

void tick()
{
    const bool isIdle = !Settings::barVisible() || hasNothingToDo();
    timer->setTolerance(isIdle ? idleTolerance : 0);
    if (isIdle)
        return;
    AlertStage::run();
    if (WindowTamer::isEnabled())
        FocusedStage::run();
}

}

namespace WindowTamer {

void start()
{
    timer = NSTimer::scheduledTimer(tickInterval, true, tick);
}

bool isEnabled()
{
    return Settings::autoFitWindows() && Settings::barVisible();
}

void reset()
{
    if (timer)
        std::exchange(timer, nullptr)->invalidate();
    last = {};
    ticksWithoutChange = 0;
    Placement::forget();
}

}
