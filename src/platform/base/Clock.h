#pragma once

#include <cstdint>

/// Where every timer, delay and time stamp comes from. Reading is safe from any thread.
class Clock {
public:
    virtual ~Clock() = default;

    /// Monotonic, in nanoseconds since an arbitrary start.
    virtual std::uint64_t nanoseconds() const = 0;
    /// The calendar's time, in seconds since 1970. It may be set back.
    virtual double wallSeconds() const = 0;
    /// Whether time passes only when it is stepped; then no thread is started and no delay waits.
    virtual bool isManual() const = 0;
};

/// The machine's monotonic clock.
class SystemClock final : public Clock {
public:
    std::uint64_t nanoseconds() const override;
    double wallSeconds() const override;
    bool isManual() const override { return false; }
};
