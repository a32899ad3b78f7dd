#include "foundation/NSTimer.h"

#include "base/Clock.h"

#include <cmath>

NSTimer::NSTimer(double seconds, bool repeats, std::function<void()> block)
    : interval_(seconds)
    , repeats_(repeats)
    , block_(std::move(block))
    , due_(RunLoop::main().clock().nanoseconds())
{
}

std::shared_ptr<NSTimer> NSTimer::scheduledTimer(double seconds, bool repeats, std::function<void()> block)
{
    const std::shared_ptr<NSTimer> timer(new NSTimer(seconds, repeats, std::move(block)));
    timer->arm();
    return timer;
}

void NSTimer::invalidate()
{
    RunLoop::main().cancel(handle_);
    block_ = nullptr;
}

void NSTimer::arm()
{
    const std::uint64_t now = RunLoop::main().clock().nanoseconds();
    const auto step = static_cast<std::uint64_t>(std::llround(interval_ * 1e9));
    due_ += step;
    if (due_ < now)
        due_ += (now - due_) / step * step + step;
    handle_ = RunLoop::main().schedule(
        static_cast<double>(due_ - now) / 1e9, [self = shared_from_this()] { self->fire(); });
}

void NSTimer::fire()
{
    const auto block = block_;
    if (repeats_)
        arm();
    else
        block_ = nullptr;
    block();
}
