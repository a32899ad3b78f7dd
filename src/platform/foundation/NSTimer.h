#pragma once

#include "base/RunLoop.h"

#include <cstdint>
#include <functional>
#include <memory>

/// A timer on the main run loop. It holds itself until it is invalidated or, when it doesn't repeat, has fired. Main
/// thread.
class NSTimer : public std::enable_shared_from_this<NSTimer> {
public:
    /// A repeating timer keeps to multiples of its interval; a firing that comes late is not made up for, nor one that
    /// comes while its block is at work, in a loop that it began.
    static std::shared_ptr<NSTimer> scheduledTimer(double seconds, bool repeats, std::function<void()> block);

    /// How late, in seconds, it may fire to spare the program a waking of its own. What happens meanwhile makes it fire
    /// in time.
    void setTolerance(double seconds);
    void invalidate();
    bool isValid() const { return static_cast<bool>(block_); }

private:
    NSTimer(double seconds, bool repeats, std::function<void()> block);
    void arm();
    void schedule();
    void fire();

    double interval_;
    double tolerance_ = 0;
    bool repeats_;
    std::function<void()> block_;
    bool isAtWork_ = false;
    RunLoop::Handle handle_ = 0;
    std::uint64_t due_;
};
