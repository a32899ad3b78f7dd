#include "app/Log.h"
#include "app/Timing.h"
#include "base/Clock.h"
#include "base/RunLoop.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>

// The environment is read once a process, so each case is run in one of its own.

namespace {

struct Case {
    const char* variable;
    const char* value;
    std::string output;
};

/// Ends the process: successfully when the body wrote just what was expected.
[[noreturn]] void expectOutput(const Case& test, const std::function<void()>& body)
{
    setenv(test.variable, test.value, 1);
    testing::internal::CaptureStderr();
    body();
    const std::string output = testing::internal::GetCapturedStderr();
    std::cerr << "wrote: " << output;
    std::exit(output == test.output ? 0 : 1);
}

void logTwice(const Case& test)
{
    Log::debug("dock: ", 3, " pinned, managed=", true);
    unsetenv(test.variable);
    Log::debug("dock: done");
}

void measureTwice()
{
    ManualClock clock;
    RunLoop::main().setClock(&clock);
    const int result = Timing::measure("work", [&] {
        clock.advance(0.01234);
        return 7;
    });
    Timing::since(Timing::now() + 1, result == 7 ? "future" : "wrong result");
    RunLoop::main().setClock(nullptr);
}

class LogDeathTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

}

TEST_F(LogDeathTest, WritesLinesOnlyWhenAskedToAndStaysAsItBegan)
{
    const Case cases[] {
        { "BAR_DEBUG", "1", "[bar] dock: 3 pinned, managed=true\n[bar] dock: done\n" },
        { "BAR_DEBUG", "true", "" },
        { "BAR_DEBUG", "", "" },
        { "BAR_TIMING", "1", "" },
    };
    for (const Case& test : cases)
        EXPECT_EXIT(expectOutput(test, [&] { logTwice(test); }), testing::ExitedWithCode(0), "")
            << test.variable << "=" << test.value;
}

TEST_F(LogDeathTest, TimingWritesMillisecondsOnlyWhenAskedTo)
{
    const Case cases[] {
        { "BAR_TIMING", "1", "[time] work 12.3ms\n[time] future 0.0ms\n" },
        { "BAR_TIMING", "yes", "" },
        { "BAR_DEBUG", "1", "" },
    };
    for (const Case& test : cases)
        EXPECT_EXIT(expectOutput(test, measureTwice), testing::ExitedWithCode(0), "")
            << test.variable << "=" << test.value;
}
