#include "base/Value.h"
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

TEST(PropertyListTest, WhatIsNoPropertyListGivesNothing)
{
    const std::string sound = PropertyList::xml(Value::Dictionary { { "key", "value" } });
    for (const std::string& bytes : { std::string(), std::string("{"), std::string("bplist00"), std::string(64, '\0'),
             sound.substr(0, sound.size() / 2) })
        EXPECT_FALSE(PropertyList::parse(bytes)) << bytes;
}

}
