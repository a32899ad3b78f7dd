#include "dock/DriftWatch.h"

#include "base/PerDesktop.h"
#include "dock/DockPrefs.h"
#include "foundation/NSTimer.h"
#include "log/Log.h"
#include "settings/Settings.h"

#include <memory>

namespace {

constexpr double interval = 3;
/// Seconds: while nothing happens it comes with the bars' refresh instead of waking the program by itself.
constexpr double tolerance = 1.5;

struct Watch {
    ~Watch() { stop(); }

    void stop()
    {
        if (timer)
            timer->invalidate();
    }

    std::shared_ptr<NSTimer> timer;
};

void look(double barHeight)
{
    if (!Settings::manageDock() || DockPrefs::isBehindBar())
        return;
    Log::debug("dock: something put it back to full size, re-applying");
    DockPrefs::keepDockBehindBar(barHeight);
}

}

void DockPrefs::startDriftWatch(double barHeight)
{
    auto& watch = perDesktop<Watch>();
    watch.stop();
    watch.timer = NSTimer::scheduledTimer(interval, true, [barHeight] { look(barHeight); });
    watch.timer->setTolerance(tolerance);
}
