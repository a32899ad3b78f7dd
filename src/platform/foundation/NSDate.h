#pragma once

#include <cstdint>

/// A moment, on the run loop's clock.
class NSDate {
public:
    static NSDate now();
    static NSDate distantPast() { return NSDate(-1e18, -1e18); }

    /// Seconds.
    double timeIntervalSince(NSDate earlier) const { return seconds_ - earlier.seconds_; }
    /// Seconds, by the calendar.
    double timeIntervalSince1970() const { return wallSeconds_; }

private:
    NSDate(double seconds, double wallSeconds)
        : seconds_(seconds)
        , wallSeconds_(wallSeconds)
    {
    }

    double seconds_;
    double wallSeconds_;
};

/// The monotonic uptime clock. Any thread.
struct DispatchTime {
    std::uint64_t uptimeNanoseconds = 0;
    static DispatchTime now();
};
