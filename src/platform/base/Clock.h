#pragma once

#include <cstdint>

/// Where every timer, delay and time stamp comes from. Reading is safe from any thread.
class Clock {
public:
    virtual ~Clock() = default;

    /// Monotonic, in nanoseconds since an arbitrary start.
    virtual std::uint64_t nanoseconds() const = 0;
    /// Whether time passes only when it is stepped; then no thread is started and no delay waits.
    virtual bool isManual() const = 0;
};

/// The machine's monotonic clock.
class SystemClock final : public Clock {
public:
    std::uint64_t nanoseconds() const override;
    bool isManual() const override { return false; }
};

/// A clock for tests: time stands still until `advance` steps it.
class ManualClock final : public Clock {
public:
    std::uint64_t nanoseconds() const override { return now_; }
    bool isManual() const override { return true; }

    /// Lets `seconds` pass: everything due on the main run loop up to then runs in order of its time, each at its time.
    /// With 0 it runs what is due now.
    void advance(double seconds);

private:
    std::uint64_t now_ = 1'000'000'000'000;
};
