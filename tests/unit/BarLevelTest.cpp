#include "bar/BarLevel.h"

#include "log/Log.h"
#include "windowserver/CGWindowLevel.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

TEST(BarLevelTest, TheEnvironmentNamesTheLevelInAnyCase)
{
    constexpr auto popUp = kCGPopUpMenuWindowLevelKey;
    const struct {
        const char* name;
        std::int32_t level;
        std::string logged;
    } cases[] {
        { nullptr, CGWindowLevelForKey(popUp), "popup" },
        { "STATUS", CGWindowLevelForKey(kCGStatusWindowLevelKey), "status" },
        { "Shielding", CGShieldingWindowLevel(), "shielding" },
        { "Somewhere", CGWindowLevelForKey(popUp), "somewhere" },
        { "", CGWindowLevelForKey(popUp), "" },
    };
    std::string log;
    Log::setSink([&](std::string_view line) { log = line; });
    for (const auto& test : cases) {
        test.name ? setenv("BAR_LEVEL", test.name, 1) : unsetenv("BAR_LEVEL");
        EXPECT_EQ(BarLevel::resolve(), test.level) << test.logged;
        EXPECT_EQ(log, "[bar] window level: " + test.logged + " -> " + std::to_string(test.level) + "\n");
    }
    unsetenv("BAR_LEVEL");
    Log::setSink(nullptr);
}
