#include "log/Log.h"
#include "base/RunLoop.h"
#include "log/Timing.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <string>

// The environment is read once a process, so each case is run in one of its own.

namespace {

struct Case {
    const char* variable;
    const char* value;
    std::string output;
};

/// Ends the process: successfully when what logs and measures wrote just what was expected.
[[noreturn]] void expectOutput(const Case& test)
{
    ManualClock clock;
    RunLoop::main().setClock(&clock);
    setenv(test.variable, test.value, 1);
    testing::internal::CaptureStderr();
    Log::debug("dock: ", 3, " pinned, managed=", true);
    const int result = Timing::measure("work", [&] {
        clock.advance(0.01234);
        return 7;
    });
    unsetenv(test.variable);
    Log::debug("dock: done");
    Timing::since(Timing::now() + 1, result == 7 ? "future" : "wrong result");
    const std::string output = testing::internal::GetCapturedStderr();
    std::cerr << "wrote: " << output;
    std::exit(output == test.output ? 0 : 1);
}

}

TEST(LogDeathTest, WritesLinesOnlyWhenAskedToAndStaysAsItBegan)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const Case cases[] {
        { "BAR_DEBUG", "1", "[bar] dock: 3 pinned, managed=true\n[bar] dock: done\n" },
        { "BAR_DEBUG", "true", "" },
        { "BAR_TIMING", "1", "[time] work 12.3ms\n[time] future 0.0ms\n" },
        { "BAR_TIMING", "", "" },
    };
    for (const Case& test : cases)
        EXPECT_EXIT(expectOutput(test), testing::ExitedWithCode(0), "") << test.variable << "=" << test.value;
}
