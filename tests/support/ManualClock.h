#pragma once

#include "base/Clock.h"

/// A clock for tests: time stands still until `advance` steps it.
class ManualClock final : public Clock {
public:
    std::uint64_t nanoseconds() const override { return now_; }
    double wallSeconds() const override { return wall_ + static_cast<double>(now_) / 1e9; }
    bool isManual() const override { return true; }

    /// Lets `seconds` pass: everything due on the main run loop up to then runs in order of its time, each at its time.
    /// With 0 it runs what is due now.
    void advance(double seconds);
    /// Somebody sets the time of day.
    void setBack(double seconds) { wall_ -= seconds; }

private:
    double wall_ = 1'772'357'400;
    std::uint64_t now_ = 1'000'000'000'000;
};
