// The catalogue over real desktop entries, the search of it and of open windows, and the menu of it. Needs DISPLAY for
// the entries' desktop; menus are painted off the screen.

#include "appkit/NSMenu.h"
#include "appkit/NSPanel.h"
#include "appkit/NSView.h"
#include "bar/BarMenus.h"
#include "base/RunLoop.h"
#include "embedded/EmbeddedDesktop.h"
#include "host/Desktop.h"
#include "search/AppCatalog.h"
#include "search/Search.h"
#include "support/ManualClock.h"
#include "support/ScenarioBuilder.h"
#include "system/WindowIndex.h"
#include "x11/X11Desktop.h"

#include <benchmark/benchmark.h>

#include <QApplication>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path& home()
{
    static const fs::path path = fs::temp_directory_path() / ("vantry-catalogue-" + std::to_string(::getpid()));
    return path;
}

/// Names of icons that the machine has.
std::vector<std::string> iconNames()
{
    std::vector<std::string> names;
    std::error_code ignored;
    for (const char* folder : { "/usr/share/icons/hicolor", "/usr/share/icons/Adwaita" })
        for (const auto& file : fs::recursive_directory_iterator(folder, ignored))
            if (file.path().parent_path().filename() != "symbolic" && file.is_regular_file())
                names.push_back(file.path().stem().string());
    return names;
}

/// As entries are in the wild: some seventy lines, most of them translations; one icon in five is missing.
void installEntries(int count)
{
    const fs::path folder = home() / "data/applications";
    fs::remove_all(folder);
    fs::create_directories(folder);
    const auto icons = iconNames();
    for (int i = 0; i < count; ++i) {
        std::ofstream file(folder / ("org.bench.Application" + std::to_string(i) + ".desktop"));
        file << "[Desktop Entry]\nType=Application\nVersion=1.0\nName=Application " << i << '\n';
        for (int language = 0; language < 30; ++language)
            file << "Name[l" << language << "]=Name " << i << "\nComment[l" << language << "]=What it is good for\n";
        const auto index = static_cast<std::size_t>(i);
        file << "Exec=application" << i
             << " %U\nTryExec=sh\nIcon=" << (i % 5 == 0 || icons.empty() ? "missing" : icons[index % icons.size()])
             << "\nCategories=Utility;\n";
    }
}

class X11Session {
public:
    X11Session()
    {
        std::string reason;
        desktop_ = x11::openX11Desktop(reason);
        if (!desktop_) {
            std::fprintf(stderr, "%s\n", reason.c_str());
            std::exit(EXIT_FAILURE);
        }
        host::Desktop::setCurrent(desktop_.get());
    }

    ~X11Session()
    {
        RunLoop::main().reset();
        host::Desktop::setCurrent(nullptr);
    }

private:
    std::unique_ptr<host::Desktop> desktop_;
};

void listTheColdCatalogue(benchmark::State& state)
{
    installEntries(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        auto session = std::make_unique<X11Session>();
        state.ResumeTiming();
        benchmark::DoNotOptimize(AppCatalog::all());
        state.PauseTiming();
        session.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(listTheColdCatalogue)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);

void openAMenuOfApplications(benchmark::State& state)
{
    installEntries(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        // Every opening is a first one: no icon has been looked for.
        auto session = std::make_unique<X11Session>();
        AppCatalog::all();
        {
            NSView view({ 0, 0, 1920, 63 });
            view.widget();
            state.ResumeTiming();
            NSMenu::popUpMenuPositioningItem(BarMenus::launcherMenu(), nullptr, { 0, 63 }, view);
            QApplication::processEvents();
            state.PauseTiming();
            NSMenu::cancelTracking();
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        session.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(openAMenuOfApplications)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);

/// 500 applications and 200 windows on an embedded desktop.
void findHits(benchmark::State& state)
{
    static ManualClock clock;
    RunLoop::main().setClock(&clock);
    embedded::ScenarioBuilder desk;
    for (int i = 0; i < 500; ++i)
        desk.installedApp("Application " + std::to_string(i));
    for (int i = 0; i < 200; ++i) {
        const std::string name = "Program " + std::to_string(i % 40);
        desk.window(i < 40 ? desk.app(name).pid : embedded::firstPid + i % 40, "Window of " + name).bounds
            = { 10, 40, 800, 600 };
    }
    const auto desktop = std::make_unique<embedded::EmbeddedDesktop>(desk, (home() / "embedded").string());
    host::Desktop::setCurrent(desktop.get());
    AppCatalog::all();
    const char* const queries[] = { "a", "ap", "application 4", "window of program 39", "no such thing at all" };
    std::size_t next = 0;
    for (auto _ : state) {
        WindowIndex::invalidate();
        benchmark::DoNotOptimize(Search::hits(queries[next++ % std::size(queries)]));
    }
    RunLoop::main().reset();
    host::Desktop::setCurrent(nullptr);
    RunLoop::main().setClock(nullptr);
}
BENCHMARK(findHits)->Unit(benchmark::kMicrosecond);

}

int main(int argc, char** argv)
{
    ::setenv("XDG_DATA_HOME", (home() / "data").c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    fs::remove_all(home());
}
