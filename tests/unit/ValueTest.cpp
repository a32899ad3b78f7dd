#include "base/Value.h"
#include "base/CGGeometry.h"
#include "base/PropertyList.h"

#include <gtest/gtest.h>

namespace {

TEST(ValueTest, AccessOfTheWrongTypeOrSizeGivesNothing)
{
    const Value text("7");
    EXPECT_FALSE(text.integer() || text.boolean() || text.array() || text.find("key"));
    const Value flag(true);
    EXPECT_FALSE(flag.integer() || flag.string());
    const Value real(2.5);
    EXPECT_FALSE(real.integer());
    EXPECT_EQ(real.number(), 2.5);
    EXPECT_EQ(Value(3.0).integer(), 3);

    const Value large(std::int64_t { 0x1'0000'0000 });
    EXPECT_FALSE(large.integer<std::int32_t>() || large.integer<std::uint32_t>());
    EXPECT_EQ(large.integer<std::uint64_t>(), 0x1'0000'0000u);
    EXPECT_FALSE(Value(-1).integer<std::uint32_t>());
}

TEST(PropertyListTest, EveryKindOfValueComesBackFromItsFile)
{
    const Value value(Value::Dictionary {
        { "true", true },
        { "false", false },
        { "negative", -42 },
        { "large", std::int64_t { 1 } << 60 },
        { "whole double", 2.0 },
        { "double", 0.82 },
        { "text", "„Übergröße“ <&> \n ⌥⌘D" },
        { "empty", "" },
        { "data", Value::Data { std::byte { 0 }, std::byte { 255 } } },
        { "date", Value::Date { 1'700'000'000 } },
        { "old date", Value::Date { -1'000'000'000 } },
        { "array", Value::Array { 1, "two", Value::Array {} } },
        { "dictionary", Value::Dictionary { { "deep", Value::Dictionary {} } } },
    });
    EXPECT_EQ(PropertyList::parse(PropertyList::xml(value)), value) << PropertyList::xml(value);
    EXPECT_EQ(PropertyList::parse(PropertyList::binary(value)), value) << PropertyList::xml(value);
    EXPECT_TRUE(PropertyList::isBinary(PropertyList::binary(value)));
}

TEST(PropertyListTest, WhatIsNoPropertyListGivesNothing)
{
    const std::string sound = PropertyList::xml(Value::Dictionary { { "key", "value" } });
    for (const std::string& bytes : { std::string(), std::string("{"), std::string("bplist00"), std::string(64, '\0'),
             sound.substr(0, sound.size() / 2) })
        EXPECT_FALSE(PropertyList::parse(bytes)) << bytes;
}

TEST(GeometryTest, WhatIsApartSharesNothing)
{
    const CGRect square { 0, 0, 10, 10 };
    EXPECT_EQ(CGRectIntersection(square, { 5, 5, 10, 10 }), (CGRect { 5, 5, 5, 5 }));
    EXPECT_FALSE(CGRectIsNull(CGRectIntersection(square, { 10, 0, 10, 10 })));
    EXPECT_TRUE(CGRectIsNull(CGRectIntersection(square, { 11, 0, 10, 10 })));
    EXPECT_TRUE(CGRectIsNull(CGRectIntersection(square, { 0, 11, 10, 10 })));
}

}
