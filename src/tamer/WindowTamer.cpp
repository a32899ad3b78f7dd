#include "tamer/WindowTamer.h"

#include "foundation/NSTimer.h"
#include "settings/Settings.h"
#include "tamer/AlertStage.h"
#include "tamer/FocusedStage.h"
#include "tamer/Placement.h"

namespace {

constexpr double tickInterval = 0.5;

std::shared_ptr<NSTimer> timer;

void tick()
{
    if (!Settings::barVisible())
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
    timer = nullptr;
    Placement::forget();
}

}
