#include "ModelTest.h"

#include "look/Appearance.h"
#include "look/HexColor.h"
#include "settings/Settings.h"

namespace {
using AppearanceTest = ModelTest;
}

TEST_F(AppearanceTest, TheAccentIsTheSystemsUntilTheUserPicksOne)
{
    EXPECT_EQ(HexColor::hexString(Appearance::accent()), "3478F6");
    Settings::accentHex.set("ab12cd");
    EXPECT_EQ(HexColor::hexString(Appearance::accent()), "AB12CD");
    Settings::accentHex.set("12345");
    EXPECT_EQ(Appearance::accent(), NSColor::controlAccentColor());
}
