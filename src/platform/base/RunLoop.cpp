#include "base/RunLoop.h"

#include "base/Clock.h"

#include <algorithm>
#include <cmath>

namespace {

SystemClock& systemClock()
{
    static SystemClock clock;
    return clock;
}

int turnDepth = 0;
std::uint64_t turnNumber = 0;

/// How many blocks one `runDue` runs at most, so that blocks which keep adding blocks don't starve the driver.
constexpr int mostBlocksAtOnce = 1000;

}

RunLoop::RunLoop()
    : clock_(&systemClock())
{
}

RunLoop& RunLoop::main()
{
    static RunLoop loop;
    return loop;
}

void RunLoop::setClock(Clock* clock)
{
    clock_ = clock ? clock : &systemClock();
}

RunLoop::Handle RunLoop::schedule(double seconds, Block block)
{
    const std::uint64_t due
        = clock_->nanoseconds() + static_cast<std::uint64_t>(std::llround(std::max(0.0, seconds) * 1e9));
    Block wake;
    Handle handle = 0;
    {
        const std::lock_guard lock(mutex_);
        handle = next_++;
        order_.emplace(due, handle);
        blocks_.emplace(handle, std::pair(due, std::move(block)));
        if (order_.begin()->second == handle)
            wake = waker_;
    }
    if (wake)
        wake();
    return handle;
}

void RunLoop::cancel(Handle handle)
{
    Block dropped;
    const std::lock_guard lock(mutex_);
    const auto place = blocks_.find(handle);
    if (place == blocks_.end())
        return;
    order_.erase({ place->second.first, handle });
    dropped = std::move(place->second.second);
    blocks_.erase(place);
}

std::optional<std::uint64_t> RunLoop::nextDue() const
{
    const std::lock_guard lock(mutex_);
    if (order_.empty())
        return std::nullopt;
    return order_.begin()->first;
}

void RunLoop::runDue()
{
    for (int count = 0; count < mostBlocksAtOnce; ++count) {
        Block block;
        {
            const std::lock_guard lock(mutex_);
            if (order_.empty() || order_.begin()->first > clock_->nanoseconds())
                return;
            const auto place = blocks_.find(order_.begin()->second);
            block = std::move(place->second.second);
            blocks_.erase(place);
            order_.erase(order_.begin());
        }
        const Turn turn;
        block();
    }
}

void RunLoop::setWaker(Block waker)
{
    const std::lock_guard lock(mutex_);
    waker_ = std::move(waker);
}

void RunLoop::reset()
{
    decltype(blocks_) dropped;
    const std::lock_guard lock(mutex_);
    order_.clear();
    dropped.swap(blocks_);
}

RunLoop::Turn::Turn()
{
    if (turnDepth++ == 0)
        ++turnNumber;
}

RunLoop::Turn::~Turn()
{
    --turnDepth;
}

std::optional<std::uint64_t> RunLoop::Turn::current()
{
    if (turnDepth == 0)
        return std::nullopt;
    return turnNumber;
}
