#include "contract/X11Fixture.h"

#include "x11/DesktopScale.h"
#include "x11/XSettings.h"

#include <QWidget>

#include <cmath>
#include <cstdlib>
#include <string_view>

namespace {

class X11Scale : public X11 {
protected:
    void TearDown() override
    {
        if (under_) {
            xcb_delete_property(under_->connection(), under_->root(), XCB_ATOM_RESOURCE_MANAGER);
            xcb_flush(under_->connection());
            settle([&] { return surfaces().scale() == 1; });
        }
        X11::TearDown();
    }

    void setResolution(int dpi)
    {
        const std::string database = "*foreground:\tblack\nXft.dpi:\t" + std::to_string(dpi) + "\nXft.hinting:\t1\n";
        xcb_change_property(under_->connection(), XCB_PROP_MODE_REPLACE, under_->root(), XCB_ATOM_RESOURCE_MANAGER,
            XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(database.size()), database.data());
        xcb_flush(under_->connection());
    }

    CGRect pixelsOf(std::uint32_t window)
    {
        const std::unique_ptr<xcb_get_geometry_reply_t, decltype(&std::free)> reply(
            xcb_get_geometry_reply(under_->connection(), xcb_get_geometry(under_->connection(), window), nullptr),
            &std::free);
        if (!reply)
            return {};
        return { double(reply->x), double(reply->y), double(reply->width), double(reply->height) };
    }
};

std::string word(std::uint32_t value)
{
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

std::string setting(char kind, std::string name, const std::string& value)
{
    const std::string head { kind, '\0', static_cast<char>(name.size()), '\0' };
    name.resize((name.size() + 3) / 4 * 4);
    return head + name + word(1) + value;
}

}

TEST(DesktopScaleTest, TheFirstThatSaysSomethingDecides)
{
    using Settings = std::map<std::string, std::int32_t>;
    constexpr int unit = 1024;
    const struct {
        x11::ScaleSources sources;
        double scale;
    } cases[] = {
        { {}, 1 },
        { { .server = 192 }, 2 },
        { { .resource = 120, .server = 192 }, 1.25 },
        { { .resource = 109 }, 1.25 },
        { { .resource = 72 }, 1 },
        { { .resource = 2000 }, 4 },
        { { .settings = Settings { { "Xft/DPI", 144 * unit } }, .resource = 96 }, 1.5 },
        { { .settings = Settings { { "Xft/DPI", -1 } }, .resource = 192 }, 2 },
        { { .settings = Settings { { "Gdk/WindowScalingFactor", 2 }, { "Gdk/UnscaledDPI", 120 * unit },
                { "Xft/DPI", 240 * unit } } },
            2.5 },
        { { .settings = Settings { { "Gdk/WindowScalingFactor", 2 } }, .resource = 96 }, 2 },
        { { .environment = 3, .settings = Settings { { "Xft/DPI", 96 * unit } } }, 3 },
    };
    for (const auto& c : cases)
        EXPECT_EQ(x11::scaleOf(c.sources), c.scale) << &c - cases;
}

TEST(XSettingsTest, NumbersAreReadAndWhatIsCutOffIsLeftOut)
{
    const std::string whole = std::string("\0\0\0\0", 4) + word(7) + word(4)
        + setting(1, "Net/ThemeName", word(5) + std::string("Light\0\0\0", 8)) + setting(0, "Xft/DPI", word(98304))
        + setting(2, "Gtk/Colour", std::string(8, '\1')) + setting(0, "Gdk/UnscaledDPI", word(0xFFFFFFFF));
    using Settings = std::map<std::string, std::int32_t>;
    const Settings all { { "Xft/DPI", 98304 }, { "Gdk/UnscaledDPI", -1 } };
    EXPECT_EQ(x11::readXSettings(whole), all);
    EXPECT_EQ(x11::readXSettings(whole.substr(0, whole.size() - 1)), (Settings { { "Xft/DPI", 98304 } }));
    for (std::size_t length = 0; length < 40; ++length)
        EXPECT_TRUE(x11::readXSettings(whole.substr(0, length)).empty()) << length;

    std::string big = std::string("\1\0\0\0", 4) + std::string("\0\0\0\7\0\0\0\1", 8) + std::string("\0\0\0\1", 4) + "A"
        + std::string(3, '\0') + word(0) + std::string("\0\1\x80\0", 4);
    EXPECT_EQ(x11::readXSettings(big), (Settings { { "A", 98304 } }));
}

TEST_F(X11Scale, APointIsAsManyPixelsAsTheSessionSays)
{
    if (!hasWindowManager())
        GTEST_SKIP() << "windows are placed by the window manager";
    const Program program = start("scaled");
    for (const auto& [dpi, scale] : { std::pair(192, 2.0), { 120, 1.25 }, { 96, 1.0 } }) {
        SCOPED_TRACE(dpi);
        int changes = 0;
        surfaces().onChange = [&] { ++changes; };
        displays().onChange = [&] { ++changes; };
        setResolution(dpi);
        ASSERT_TRUE(settle([&, wanted = scale] { return surfaces().scale() == wanted && changes >= 2; }));
        const CGRect screen = displays().all().front().frame;
        EXPECT_EQ(screen.size(), (CGSize { 1920 / scale, 1080 / scale }));

        // A bar.
        QWidget bar;
        surfaces().adopt(bar, { .role = host::SurfaceRole::bottomBar, .isOpaque = true }, { 0, 0, screen.width, 64 });
        surfaces().orderFront(bar);
        const auto number = static_cast<xcb_window_t>(bar.winId());
        const double height = 64 * scale;
        EXPECT_TRUE(settle([&] { return pixelsOf(number).size() == CGSize { 1920, height }; }));
        const auto strut = static_cast<std::uint32_t>(height + std::round(5 * scale));
        EXPECT_TRUE(settle([&] { return numbers(number, "_NET_WM_STRUT_PARTIAL").at(3) == strut; }));
        surfaces().release(bar);
        bar.close();

        // Another program's window, moved and resized.
        const CGRect goal { 100, 60, 400, 300 };
        write(element(program.pid, program.window), Attribute::position, goal.origin());
        write(element(program.pid, program.window), Attribute::size, goal.size());
        EXPECT_TRUE(settle([&] { return bounds(program.window) == goal; })) << bounds(program.window).width;
        const CGRect client = pixelsOf(program.window);
        EXPECT_LE(client.width, 400 * scale);
        EXPECT_GE(client.width, 380 * scale) << "all but its borders";

        // The pointer.
        xcb_warp_pointer(under_->connection(), XCB_WINDOW_NONE, under_->root(), 0, 0, 0, 0, 500, 1080 - 200 - 1);
        xcb_flush(under_->connection());
        const CGPoint place { 500 / scale, 200 / scale };
        EXPECT_TRUE(settle([&] { return under_->desktop().pointer().location() == place; }));
    }
    surfaces().onChange = nullptr;
}
