#include "look/HexColor.h"

#include <gtest/gtest.h>

namespace {

TEST(HexColorTest, ReadsSixDigitsHoweverTheyAreDressed)
{
    for (const char* text : { "FF8800", "ff8800", "#FF8800", "  # fF8800 ", "FF8800##" })
        EXPECT_EQ(HexColor::parse(text), NSColor::colorWithSRGBRed(1, 136 / 255.0, 0, 1)) << text;
}

TEST(HexColorTest, IsAbsentForAnythingElse)
{
    for (const char* text : { "", "#", "FF880", "FF88000", "FF88 0", "GG8800", "+F8800", "-F8800", "0xFF88", "\tFF8800",
             "not a colour", "ÄÖÜ" })
        EXPECT_EQ(HexColor::parse(text), std::nullopt) << text;
}

TEST(HexColorTest, WritesCapitalsRoundedToTheNearestByte)
{
    EXPECT_EQ(HexColor::hexString(*HexColor::parse("0af9c1")), "0AF9C1");
    EXPECT_EQ(HexColor::hexString(NSColor::colorWithSRGBRed(0.1, 0.499 / 255, 0.501 / 255, 0.3)), "1A0001");
}

}
