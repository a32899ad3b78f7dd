#include "x11/DesktopScale.h"
#include "x11/XSettings.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

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
