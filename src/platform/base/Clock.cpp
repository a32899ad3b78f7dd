#include "base/Clock.h"

#include "base/RunLoop.h"

#include <algorithm>
#include <chrono>
#include <cmath>

std::uint64_t SystemClock::nanoseconds() const
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

void ManualClock::advance(double seconds)
{
    RunLoop& loop = RunLoop::main();
    const std::uint64_t end = now_ + static_cast<std::uint64_t>(std::llround(seconds * 1e9));
    for (auto due = loop.nextDue(); due && *due <= end; due = loop.nextDue()) {
        now_ = std::max(now_, *due);
        loop.runDue();
    }
    now_ = end;
    loop.runDue();
}
