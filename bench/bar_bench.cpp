// One refresh of a bar and one painting of it, in process, on the embedded desktop.

#include "appkit/DrawingList.h"
#include "appkit/DrawingPainter.h"
#include "bar/BarController.h"
#include "base/RunLoop.h"
#include "embedded/EmbeddedDesktop.h"
#include "foundation/NSFileManager.h"
#include "settings/Settings.h"
#include "support/ManualClock.h"
#include "support/ScenarioBuilder.h"
#include "system/WindowIndex.h"
#include "tamer/WindowTamer.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace {

/// A desktop with that many applications and windows, and the program on it.
class Bench {
public:
    Bench(int applications, int windows, double width)
    {
        RunLoop::main().reset();
        RunLoop::main().setClock(&clock_);
        root_ = std::filesystem::temp_directory_path() / ("vantry-bench-" + std::to_string(::getpid()));
        embedded::ScenarioBuilder desk;
        desk.displays[0].frame = { 0, 0, width, 1080 };
        for (int i = 0; i < applications; ++i) {
            const std::string name = "Application " + std::to_string(i);
            if (i % 2 == 0)
                desk.pinnedApp(name);
            const pid_t pid = desk.app(name).pid;
            for (int window = i; window < windows; window += applications)
                desk.window(pid, "Window " + std::to_string(window)).bounds = { 10.0 * window, 40, 800, 600 };
        }
        for (int i = 0; i < 5; ++i)
            desk.badges["Application " + std::to_string(i)] = std::to_string(i + 1);
        desktop_ = std::make_unique<embedded::EmbeddedDesktop>(desk, root_.string());
        host::Desktop::setCurrent(desktop_.get());
        controller_ = std::make_shared<BarController>(Displays::all().front());
    }

    ~Bench()
    {
        controller_.reset();
        RunLoop::main().reset();
        host::Desktop::setCurrent(nullptr);
        std::filesystem::remove_all(root_);
    }

    BarController& controller() { return *controller_; }
    BarView& view() { return *controller_->view(); }
    void advance(double seconds) { clock_.advance(seconds); }
    /// Lets every cache run out.
    void letCachesRunOut()
    {
        clock_.advance(2);
        WindowIndex::invalidate();
    }

private:
    ManualClock clock_;
    std::filesystem::path root_;
    std::unique_ptr<embedded::EmbeddedDesktop> desktop_;
    std::shared_ptr<BarController> controller_;
};

void refreshWithColdCaches(benchmark::State& state)
{
    Bench bench(40, 200, 1920);
    Settings::grouping.set(static_cast<WindowGrouping>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        bench.letCachesRunOut();
        state.ResumeTiming();
        const RunLoop::Turn turn;
        bench.controller().refresh();
    }
    state.SetLabel(std::string(rawValue(Settings::grouping())));
}
BENCHMARK(refreshWithColdCaches)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

/// One tick of the tamer with a focused window that is clear of the bar.
void idleTick(benchmark::State& state)
{
    Bench bench(40, 200, 1920);
    WindowTamer::start();
    for (auto _ : state)
        bench.advance(0.5);
}
BENCHMARK(idleTick)->Unit(benchmark::kMicrosecond);

/// With so many files in the Trash; each time something else is hovered.
void recordWhatABarDraws(benchmark::State& state)
{
    Bench bench(60, 200, 3840);
    for (int file = 0; file < state.range(0); ++file)
        std::ofstream(NSHomeDirectory() + "/.Trash/" + std::to_string(file));
    bench.controller().refresh();
    double x = bench.view().rect(BarComponent::apps).x;
    for (auto _ : state) {
        const RunLoop::Turn turn;
        bench.view().updateHover({ x, 20 });
        x = bench.view().rect(BarComponent::trash).midX() - x;
        benchmark::DoNotOptimize(bench.view().record());
    }
}
BENCHMARK(recordWhatABarDraws)->Arg(0)->Arg(20'000)->Unit(benchmark::kMicrosecond);

void paint(const DrawingList& list, QImage& image)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    DrawingPainter context(painter, { static_cast<double>(image.width()), static_cast<double>(image.height()) }, false);
    list.replay(context);
}

void paintAFullBar(benchmark::State& state)
{
    Bench bench(60, 200, 3840);
    Settings::barStyle.set(static_cast<BarStyle>(state.range(0)));
    bench.controller().refresh();
    const DrawingList list = bench.view().record();
    QImage image(3840, 63, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (auto _ : state)
        paint(list, image);
    state.SetLabel(std::string(rawValue(Settings::barStyle())));
}
BENCHMARK(paintAFullBar)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

/// Beside it: the toolkit filling as many pixels with one colour, and nothing else.
void fillAsManyPixels(benchmark::State& state)
{
    QImage image(3840, 63, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter painter(&image);
        painter.fillRect(image.rect(), QColor(26, 28, 34, 240));
    }
}
BENCHMARK(fillAsManyPixels)->Unit(benchmark::kMicrosecond);

}

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
