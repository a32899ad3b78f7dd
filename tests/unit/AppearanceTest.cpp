#include "ModelTest.h"

#include "bar/Appearance.h"
#include "bar/HexColor.h"
#include "bar/Palette.h"
#include "settings/Settings.h"

namespace {
using AppearanceTest = ModelTest;
}

TEST_F(AppearanceTest, AStoredTextThatIsNoColourFallsBackAndStays)
{
    Settings::barTintHex.set("FF8800");
    EXPECT_EQ(HexColor::hexString(Appearance::tint()), "FF8800");
    Settings::barTintHex.set("not a colour");
    EXPECT_EQ(Appearance::tint(), Palette::barTint);
    EXPECT_EQ(Settings::barTintHex(), "not a colour");
}

TEST_F(AppearanceTest, TheAccentIsTheSystemsUntilTheUserPicksOne)
{
    EXPECT_EQ(HexColor::hexString(Appearance::accent()), "3478F6");
    Settings::accentHex.set("ab12cd");
    EXPECT_EQ(HexColor::hexString(Appearance::accent()), "AB12CD");
    Settings::accentHex.set("12345");
    EXPECT_EQ(Appearance::accent(), NSColor::controlAccentColor());
}

TEST_F(AppearanceTest, AFloatingBarStandsInByItsSize)
{
    const struct {
        BarSize size;
        double inset;
    } cases[] { { BarSize::small, 7 }, { BarSize::medium, 8 }, { BarSize::large, 10 } };
    for (const auto& test : cases) {
        Settings::barSize.set(test.size);
        Settings::floatingBar.set(false);
        EXPECT_EQ(Appearance::floatingInset(), 0);
        Settings::floatingBar.set(true);
        EXPECT_EQ(Appearance::floatingInset(), test.inset);
    }
}
