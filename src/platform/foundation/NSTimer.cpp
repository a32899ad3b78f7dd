#include "foundation/NSTimer.h"

#include "base/Clock.h"

#include <cmath>
#include <utility>

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
    schedule();
}

void NSTimer::schedule()
{
    const std::uint64_t now = RunLoop::main().clock().nanoseconds();
    const double wait = due_ > now ? static_cast<double>(due_ - now) / 1e9 : 0;
    handle_ = RunLoop::main().schedule(
        wait, [self = shared_from_this()] { self->fire(); }, tolerance_);
}

void NSTimer::setTolerance(double seconds)
{
    if (!isValid() || seconds == tolerance_)
        return;
    tolerance_ = seconds;
    RunLoop::main().cancel(handle_);
    schedule();
}

void NSTimer::fire()
{
    const auto block = block_;
    if (repeats_)
        arm();
    else
        block_ = nullptr;
    if (std::exchange(isAtWork_, true))
        return;
    block();
    isAtWork_ = false;
}
