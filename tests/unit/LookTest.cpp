#include "ModelTest.h"

#include "look/Appearance.h"
#include "look/HexColor.h"
#include "settings/Settings.h"

namespace {
using LookTest = ModelTest;
}

TEST_F(LookTest, HexColorsAreSixDigitsHoweverTheyAreDressed)
{
    for (const char* text : { "FF8800", "ff8800", "#FF8800", "  # fF8800 ", "FF8800##" })
        EXPECT_EQ(HexColor::parse(text), NSColor::colorWithSRGBRed(1, 136 / 255.0, 0, 1)) << text;
    for (const char* text : { "", "#", "FF880", "FF88000", "FF88 0", "GG8800", "+F8800", "-F8800", "0xFF88", "\tFF8800",
             "not a colour", "ÄÖÜ" })
        EXPECT_EQ(HexColor::parse(text), std::nullopt) << text;
    const NSColor color = NSColor::colorWithSRGBRed(0.1, 0.499 / 255, 0.501 / 255, 0.3);
    EXPECT_EQ(HexColor::hexString(color), "1A0001") << "rounded to the nearest byte";
}

TEST_F(LookTest, TheAccentIsTheSystemsUntilTheUserPicksOne)
{
    for (const auto& [stored, accent] :
        { std::pair { "", "3478F6" }, std::pair { "ab12cd", "AB12CD" }, std::pair { "12345", "3478F6" } }) {
        Settings::accentHex.set(stored);
        EXPECT_EQ(HexColor::hexString(Appearance::accent()), accent);
    }
}
