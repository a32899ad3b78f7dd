#pragma once

#include "base/RunLoop.h"

#include <mutex>
#include <utility>

/// A block on the main run loop that is there at most once, and goes with its owner. Any thread schedules it.
class Pending {
public:
    ~Pending() { RunLoop::main().cancel(handle_); }

    void schedule(double seconds, RunLoop::Block block)
    {
        const std::lock_guard lock(mutex_);
        if (handle_ != 0)
            return;
        handle_ = RunLoop::main().schedule(seconds, [this, block = std::move(block)] {
            forget();
            block();
        });
    }

private:
    void forget()
    {
        const std::lock_guard lock(mutex_);
        handle_ = 0;
    }

    std::mutex mutex_;
    RunLoop::Handle handle_ = 0;
};
