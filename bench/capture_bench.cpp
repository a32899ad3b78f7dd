// Thumbnails on a real X server: how long one takes, how much many of them keep, and how soon a preview is painted.
// Run it under tests/with-xserver.

#include "bar/Preview.h"
#include "bar/PreviewPanel.h"
#include "base/Clock.h"
#include "base/IconSource.h"
#include "base/RunLoop.h"
#include "host/Capture.h"
#include "host/Desktop.h"
#include "host/Windows.h"
#include "x11/X11Desktop.h"

#include <xcb/xcb.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

using Moment = std::chrono::steady_clock::time_point;

Moment now()
{
    return std::chrono::steady_clock::now();
}

double milliseconds(Moment from)
{
    return std::chrono::duration<double, std::milli>(now() - from).count();
}

template <class Condition>
void runUntil(Condition condition)
{
    while (!condition()) {
        QCoreApplication::processEvents();
        RunLoop::main().runDue();
    }
}

void report(const char* what, std::vector<double> samples)
{
    std::ranges::sort(samples);
    std::printf("%-52s median %7.2f ms  min %7.2f  max %7.2f  (%zu runs)\n", what, samples[samples.size() / 2],
        samples.front(), samples.back(), samples.size());
}

double pssMiB()
{
    std::ifstream file("/proc/self/smaps_rollup");
    for (std::string word; file >> word;) {
        double kilobytes = 0;
        if (word == "Pss:" && file >> kilobytes)
            return kilobytes / 1024;
    }
    return 0;
}

/// A page of coloured text, as an editor would show.
QImage page(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor("#fbfbf8"));
    QPainter painter(&image);
    for (int y = 20; y < height; y += 18)
        for (int x = 10 + (y * 7) % 60; x < width; x += 90) {
            painter.setPen(QColor::fromHsv((x * 31 + y * 17) % 360, 200, 120));
            painter.drawText(x, y, QString::number(x * y, 36) + " = " + QString::number(x ^ y));
        }
    return image;
}

/// Windows of another client, all with the page as their background.
class Windows {
public:
    Windows()
        : connection_(xcb_connect(nullptr, nullptr))
        , screen_(xcb_setup_roots_iterator(xcb_get_setup(connection_)).data)
    {
    }
    ~Windows() { xcb_disconnect(connection_); }

    xcb_window_t open(int x, int y, int width, int height)
    {
        const auto pixmap = xcb_generate_id(connection_);
        const auto context = xcb_generate_id(connection_);
        const auto window = xcb_generate_id(connection_);
        const auto w = static_cast<std::uint16_t>(width);
        const auto h = static_cast<std::uint16_t>(height);
        xcb_create_pixmap(connection_, screen_->root_depth, pixmap, screen_->root, w, h);
        xcb_create_gc(connection_, context, pixmap, 0, nullptr);
        const QImage image = page(width, height);
        xcb_put_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, w, h, 0, 0, 0, screen_->root_depth,
            static_cast<std::uint32_t>(image.sizeInBytes()), image.constBits());
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, static_cast<std::int16_t>(x),
            static_cast<std::int16_t>(y), w, h, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
            XCB_CW_BACK_PIXMAP, &pixmap);
        constexpr std::string_view name { "bench\0Bench", 12 };
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
            static_cast<std::uint32_t>(name.size()), name.data());
        xcb_map_window(connection_, window);
        xcb_free_pixmap(connection_, pixmap);
        xcb_free_gc(connection_, context);
        xcb_flush(connection_);
        runUntil([&] { return host::Desktop::current().windows().find(window) != nullptr; });
        return window;
    }

private:
    xcb_connection_t* connection_;
    xcb_screen_t* screen_;
};

void captureOften(const char* what, xcb_window_t window, int width, int height)
{
    std::vector<double> whole;
    std::vector<double> onMain;
    for (int run = 0; run < 40; ++run) {
        bool isDone = false;
        const Moment start = now();
        host::Desktop::current().capture().capture(window, width, height, [&](const host::Captured& captured) {
            if (!captured.picture)
                std::printf("failed: %s\n", captured.error.c_str());
            isDone = true;
        });
        onMain.push_back(milliseconds(start));
        runUntil([&] { return isDone; });
        whole.push_back(milliseconds(start));
    }
    report(what, whole);
    report("  of it the hand-over on the main thread", onMain);
}

void fillCache(const std::vector<xcb_window_t>& windows)
{
    std::size_t ready = 0;
    const double before = pssMiB();
    for (const auto window : windows)
        Preview::thumbnail(window, [&] { ++ready; });
    const Moment start = now();
    runUntil([&] { return ready == windows.size(); });
    std::printf("%zu thumbnails: %.0f ms in all, %.1f MiB more (PSS)\n", windows.size(), milliseconds(start),
        pssMiB() - before);
}

void showPreviews(const char* what, const std::vector<xcb_window_t>& windows)
{
    PreviewPanel panel;
    std::vector<double> samples;
    for (std::size_t first = 0; first + 10 <= windows.size(); first += 10) {
        std::vector<WindowEntry> entries;
        for (std::size_t index = first; index < first + 10; ++index)
            entries.push_back({ windows[index], 1, "Window " + std::to_string(index), {}, {} });
        const Moment start = now();
        panel.show(entries, "Bench", { 900, 0, 56, 63 });
        panel.content()->widget()->window()->repaint();
        samples.push_back(milliseconds(start));
        panel.hide();
        runUntil([&] { return milliseconds(start) > 100; });
    }
    // The first is also the first window of its kind.
    report(what, { samples.begin() + 1, samples.end() });
}

}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    std::string reason;
    const auto desktop = x11::openX11Desktop(reason);
    if (!desktop) {
        std::fprintf(stderr, "%s\n", reason.c_str());
        return 1;
    }
    host::Desktop::setCurrent(desktop.get());
    Windows windows;
    const auto large = windows.open(0, 0, 1920, 1080);
    runUntil([start = now()] { return milliseconds(start) > 300; });
    captureOften("thumbnail of 1920 by 1080", large, 240, 135);

    std::vector<xcb_window_t> many;
    for (int index = 0; index < 200; ++index)
        many.push_back(windows.open(index * 3, index * 2, 960, 600));
    runUntil([start = now()] { return milliseconds(start) > 500; });
    captureOften("thumbnail of 1920 by 1080, covered by 200", large, 240, 135);
    fillCache(many);
    showPreviews("preview of 10 cached windows, never painted before", many);
    many.resize(20);
    for (int run = 0; run < 3; ++run)
        showPreviews("the same, painted before", many);
    host::Desktop::setCurrent(nullptr);
    return 0;
}
