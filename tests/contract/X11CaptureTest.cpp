#include "contract/X11Fixture.h"

#include "base/IconSource.h"
#include "host/Capture.h"
#include "x11/X11Desktop.h"

#include <QImage>

#include <algorithm>

namespace {

constexpr std::uint32_t red = 0xC03020;
constexpr std::uint32_t green = 0x20A040;

class X11Capture : public X11 {
protected:
    struct Outcome {
        QImage picture;
        std::string error;
    };

    Outcome capture(
        std::uint32_t window, int width = 240, int height = 180, const std::function<void()>& meanwhile = {})
    {
        std::optional<Outcome> outcome;
        under_->desktop().capture().capture(window, width, height, [&](host::Captured captured) {
            outcome.emplace();
            outcome->error = captured.error;
            if (captured.picture) {
                const auto& bytes = std::get<IconSource::Packed>(captured.picture->content).bytes;
                outcome->picture = QImage::fromData(bytes.data(), static_cast<int>(bytes.size()));
            }
        });
        EXPECT_FALSE(outcome) << "answered at once";
        EXPECT_TRUE(settle([&] {
            if (meanwhile)
                meanwhile();
            return outcome.has_value();
        }));
        return outcome.value_or(Outcome {});
    }

    void paint(std::uint32_t window, std::uint32_t color)
    {
        xcb_change_window_attributes(under_->connection(), window, XCB_CW_BACK_PIXEL, &color);
        xcb_clear_area(under_->connection(), 1, window, 0, 0, 0, 0);
        xcb_flush(under_->connection());
    }

    Program start(const std::string& name, std::uint32_t color, const CGRect& frame)
    {
        const Program program = X11::start(name, {}, frame);
        EXPECT_TRUE(settle([&] { return isMapped(program.window); }));
        paint(program.window, color);
        return program;
    }

    bool isMapped(std::uint32_t window)
    {
        const auto reply = under_->ask(xcb_get_window_attributes_reply, xcb_get_window_attributes, window);
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    /// How much of a picture, from 0 to 1, is of a colour or nearly so.
    static double share(const QImage& picture, std::uint32_t color)
    {
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                const QRgb pixel = picture.pixel(x, y);
                const auto isNear = [](int a, int b) { return std::abs(a - b) < 8; };
                count += isNear(qRed(pixel), qRed(color)) && isNear(qGreen(pixel), qGreen(color))
                    && isNear(qBlue(pixel), qBlue(color));
            }
        return static_cast<double>(count) / (picture.width() * picture.height());
    }

    QRgb onScreen(int x, int y)
    {
        const auto reply = under_->ask(xcb_get_image_reply, xcb_get_image, XCB_IMAGE_FORMAT_Z_PIXMAP, under_->root(),
            static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U);
        return *reinterpret_cast<const QRgb*>(xcb_get_image_data(reply.get())) & 0xFFFFFF;
    }
};

}

TEST_F(X11Capture, AWindowsOwnPixelsAreSeenWhateverLiesOverItAndNothingChangesOnTheScreen)
{
    const struct {
        const char* name;
        CGRect over;
        std::uint32_t seen;
    } rows[] = {
        { "nothing", { 900, 600, 200, 150 }, red },
        { "half", { 400, 100, 600, 600 }, green },
        { "all", { 150, 100, 800, 700 }, green },
    };
    for (const auto& row : rows) {
        const auto below = start("below", red, { 250, 200, 480, 360 });
        const auto above = start("above", green, row.over);
        const auto isUnchanged = [&] { return surfaces().canBlend() || onScreen(500, 500) == row.seen; };
        EXPECT_TRUE(settle(isUnchanged)) << row.name;
        const auto outcome = capture(below.window, 240, 180, [&] { EXPECT_TRUE(isUnchanged()) << row.name; });
        ASSERT_EQ(outcome.error, "") << row.name;
        EXPECT_EQ(outcome.picture.size(), QSize(240, 180)) << row.name;
        EXPECT_GT(share(outcome.picture, red), hasWindowManager() ? 0.8 : 0.99) << row.name;
        EXPECT_LT(share(outcome.picture, green), 0.01) << row.name;
        stop(above);
        stop(below);
    }
}

TEST_F(X11Capture, APictureIsTheWholeWindowScaled)
{
    const auto program = start("halves", red, { 200, 150, 801, 603 });
    // A child over the right half.
    const auto child = xcb_generate_id(under_->connection());
    xcb_create_window(under_->connection(), XCB_COPY_FROM_PARENT, child, program.window, 400, 0, 401, 603, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, &green);
    xcb_map_window(under_->connection(), child);
    xcb_flush(under_->connection());
    for (const int width : { 801, 500, 240, 37, 1 }) {
        const auto outcome = capture(program.window, width, std::max(1, width * 3 / 4));
        ASSERT_EQ(outcome.picture.width(), width);
        if (width > 1) {
            EXPECT_NEAR(share(outcome.picture, red), 0.48, 0.03 + 5.0 / width) << width;
            EXPECT_NEAR(share(outcome.picture, green), 0.48, 0.03 + 5.0 / width) << width;
        }
    }
}

TEST_F(X11Capture, AWindowWithoutPixelsFails)
{
    const auto iconified = start("iconified", red, { 250, 200, 480, 360 });
    if (hasWindowManager()) {
        under_->minimise(iconified.window);
        EXPECT_TRUE(settle(
            [&] { return read<bool>(element(iconified.pid, iconified.window), host::Attribute::minimized) == true; }));
    } else {
        xcb_unmap_window(under_->connection(), iconified.window);
        xcb_flush(under_->connection());
    }
    // A window manager that composes may leave it mapped, and its pixels with it.
    EXPECT_TRUE(settle([&] {
        const auto outcome = capture(iconified.window);
        return isMapped(iconified.window) ? share(outcome.picture, red) > 0.8
                                          : outcome.picture.isNull() && !outcome.error.empty();
    }));
    stop(iconified);
    EXPECT_NE(capture(iconified.window).error, "");
    EXPECT_NE(capture(under_->root()).error, "");
}

TEST_F(X11Capture, WindowsThatDieMeanwhileFailAndTheAnswersOfADesktopThatHasGoneNeverCome)
{
    const auto lasting = start("lasting", red, { 250, 200, 480, 360 });
    int answers = 0;
    for (int run = 0; run < 8; ++run) {
        const auto pid = under_->startProgram("dying");
        const auto window = under_->openWindow(pid, "dying", { 300, 250, 480, 360 });
        for (const auto each : { lasting.window, window })
            under_->desktop().capture().capture(each, 240, 180, [&](const host::Captured&) { ++answers; });
        under_->endProgram(pid);
    }
    EXPECT_TRUE(settle([&] { return answers == 16; })) << answers;

    std::string reason;
    auto other = x11::openX11Desktop(reason);
    ASSERT_TRUE(other) << reason;
    other->capture().capture(lasting.window, 240, 180, [&](const host::Captured&) { ++answers; });
    other.reset();
    EXPECT_GT(share(capture(lasting.window).picture, red), 0.8) << "ours still works, and takes as long";
    EXPECT_EQ(answers, 16);
}
