// The window index over a real X server with 200 real windows of another process. Needs DISPLAY, with a window manager.

#include "base/RunLoop.h"
#include "host/Desktop.h"
#include "support/ManualClock.h"
#include "system/WindowIndex.h"
#include "tamer/WindowTamer.h"
#include "x11/X11Desktop.h"

#include <benchmark/benchmark.h>
#include <xcb/xcb.h>

#include <QApplication>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

namespace {

constexpr int windowCount = 200;

/// Opens the windows, and keeps them until it is ended.
[[noreturn]] void beTheOtherProgram()
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    for (int i = 0; i < windowCount; ++i) {
        const xcb_window_t window = xcb_generate_id(connection);
        const auto place = static_cast<std::int16_t>(i * 4);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, place, place, 400, 300, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        const std::string title = "Window " + std::to_string(i);
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
            static_cast<std::uint32_t>(title.size()), title.data());
        const char wmClass[] = "bench\0Bench";
        xcb_change_property(
            connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, sizeof wmClass, wmClass);
        xcb_map_window(connection, window);
    }
    xcb_flush(connection);
    while (true)
        ::pause();
}

std::size_t countedWindows()
{
    WindowIndex::invalidate();
    return WindowIndex::all().size();
}

bool waitForWindows()
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (countedWindows() < windowCount && std::chrono::steady_clock::now() < end) {
        RunLoop::main().runDue();
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return countedWindows() >= windowCount;
}

void rebuildTheIndex(benchmark::State& state)
{
    for (auto _ : state) {
        WindowIndex::invalidate();
        benchmark::DoNotOptimize(WindowIndex::byPID());
    }
    state.SetLabel(std::to_string(countedWindows()) + " windows");
}
BENCHMARK(rebuildTheIndex)->Unit(benchmark::kMicrosecond);

/// How often this process has written to a file or socket.
long long writes()
{
    std::ifstream file("/proc/self/io");
    std::string key;
    for (long long value = 0; file >> key >> value;) {
        if (key == "syscw:")
            return value;
    }
    return -1;
}

/// One tick of the tamer with nothing to do.
void idleTick(benchmark::State& state)
{
    ManualClock clock;
    RunLoop::main().setClock(&clock);
    WindowTamer::start();
    const long long before = writes();
    for (auto _ : state)
        clock.advance(0.5);
    state.SetLabel("socket writes: " + std::to_string(writes() - before));
    RunLoop::main().reset();
    RunLoop::main().setClock(nullptr);
}
BENCHMARK(idleTick)->Unit(benchmark::kMicrosecond);

}

int main(int argc, char** argv)
{
    const pid_t other = ::fork();
    if (other == 0)
        beTheOtherProgram();

    std::string reason;
    const auto desktop = x11::openX11Desktop(reason);
    if (!desktop) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    host::Desktop::setCurrent(desktop.get());
    if (waitForWindows()) {
        benchmark::Initialize(&argc, argv);
        benchmark::RunSpecifiedBenchmarks();
    } else {
        std::fprintf(stderr, "the windows don't all come: %zu\n", countedWindows());
    }
    host::Desktop::setCurrent(nullptr);
    ::kill(other, SIGTERM);
    ::waitpid(other, nullptr, 0);
}
