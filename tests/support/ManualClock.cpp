#include "support/ManualClock.h"

#include "base/RunLoop.h"

#include <algorithm>
#include <cmath>

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
