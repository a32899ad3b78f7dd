#pragma once

#include "log/Timing.h"

#include <cstdint>

/// How long a probe goes on, whatever the desktop has in store for it: what it looks at next takes its time, too, and
/// all of it is to be over within half a minute.
class TimeLimit {
public:
    static constexpr int seconds = 15;

    bool isOver() const { return Timing::now() - start_ > std::uint64_t { seconds } * 1'000'000'000; }

private:
    std::uint64_t start_ = Timing::now();
};
