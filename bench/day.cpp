// A day on the embedded desktop, on a clock that is stepped: ticks, hovers, clicks, windows that come and go. What the
// process holds is told every hour of it, or of as many hours as are given.

#include "app/AppDelegate.h"
#include "embedded/EmbeddedDesktop.h"
#include "support/ManualClock.h"
#include "support/ScenarioBuilder.h"

#include "base/RunLoop.h"

#include <QApplication>

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

constexpr int hoursADay = 24;
constexpr int minutesAnHour = 60;

double heldMiB()
{
    ::malloc_trim(0);
    return static_cast<double>(::mallinfo2().uordblks) / (1024 * 1024);
}

/// A minute of somebody's work.
void work(embedded::EmbeddedDesktop& desktop, ManualClock& clock, pid_t mail, BarManager& bars, int minute)
{
    embedded::World& world = desktop.world();
    const auto view = bars.controllers().begin()->second->view();
    const std::uint32_t window = world.open({ .owner = mail,
        .title = "Letter " + std::to_string(minute),
        .bounds = { 100.0 + minute % 300, 100, 600, 400 },
        .spaces = {},
        .faults = {} });
    for (int step = 0; step < 10; ++step) {
        view->updateHover({ 200.0 + 60 * step, 30 });
        clock.advance(1);
    }
    view->cancelTooltip();
    world.setTitle(window, "Sent " + std::to_string(minute));
    world.activate(mail);
    clock.advance(20);
    world.setMinimised(window, true);
    clock.advance(10);
    world.close(window);
    clock.advance(20);
    QCoreApplication::processEvents();
}

}

int main(int argc, char** argv)
{
    const int hours = argc > 1 ? std::atoi(argv[1]) : hoursADay;
    QApplication toolkit(argc, argv);
    ManualClock clock;
    RunLoop::main().setClock(&clock);
    embedded::ScenarioBuilder desk;
    const pid_t mail = desk.app("Mail").pid;
    desk.window(mail, "Inbox").bounds = { 100, 80, 800, 600 };
    const pid_t notes = desk.app("Notes").pid;
    desk.window(notes, "All Notes").bounds = { 300, 180, 700, 500 };
    const auto folder = std::filesystem::temp_directory_path() / "vantry-day";
    embedded::EmbeddedDesktop desktop(desk, folder.string());
    host::Desktop::setCurrent(&desktop);
    {
        AppDelegate delegate(NSApplication::sharedApplication());
        delegate.applicationDidFinishLaunching();
        for (int hour = 0; hour <= hours; ++hour) {
            for (int minute = 0; minute < minutesAnHour && hour > 0; ++minute)
                work(desktop, clock, mail, *delegate.manager(), minute);
            std::printf("hour %2d: %.2f MiB held\n", hour, heldMiB());
            std::fflush(stdout);
        }
    }
    host::Desktop::setCurrent(nullptr);
    std::filesystem::remove_all(folder);
    return 0;
}
