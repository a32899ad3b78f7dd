#include "tamer/WindowTamer.h"

#include "base/PerDesktop.h"
#include "foundation/NSTimer.h"
#include "settings/Settings.h"
#include "tamer/AlertStage.h"
#include "tamer/FocusedStage.h"
#include "tamer/Placement.h"
#include "windowserver/CGWindow.h"

#include <cstdint>
#include <optional>

namespace {

constexpr double tickInterval = 0.5;
/// While nothing happens a tick may wait for the bars to refresh, and the program sleeps through.
constexpr double idleTolerance = 1.0;

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

struct State {
    State() = default;
    ~State()
    {
        if (timer)
            timer->invalidate();
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    std::shared_ptr<NSTimer> timer;
    Situation last;
    int ticksWithoutChange = 0;
};

/// Mostly a tick finds everything as the ones before it did, which had nothing to ask of anybody. Then neither has this
/// one, and the program sleeps on. It takes two of them, as the first may have read an index from before a change.
bool hasNothingToDo()
{
    const Situation now = Situation::now();
    State& state = perDesktop<State>();
    const bool isSame = now.changes && now == state.last;
    state.last = now;
    state.ticksWithoutChange = isSame ? state.ticksWithoutChange + 1 : 0;
    return state.ticksWithoutChange >= 2;
}

void tick()
{
    const bool isIdle = !Settings::barVisible() || hasNothingToDo();
    perDesktop<State>().timer->setTolerance(isIdle ? idleTolerance : 0);
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
    perDesktop<State>().timer = NSTimer::scheduledTimer(tickInterval, true, tick);
}

bool isEnabled()
{
    return Settings::autoFitWindows() && Settings::barVisible();
}

}
