#include "base/RunLoop.h"

#include "base/Clock.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>

namespace {

SystemClock& systemClock()
{
    static SystemClock clock;
    return clock;
}

/// The one on which the program was loaded.
const std::thread::id mainThread = std::this_thread::get_id();

int turnDepth = 0;
/// How many of the open turns have ended all the same: a loop was begun inside of them.
int endedTurns = 0;
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

/// In nanoseconds of the clock.
std::uint64_t RunLoop::after(double seconds) const
{
    return clock_->nanoseconds() + static_cast<std::uint64_t>(std::llround(std::max(0.0, seconds) * 1e9));
}

RunLoop::Handle RunLoop::schedule(double seconds, Block block, double tolerance)
{
    const std::uint64_t latest = after(seconds + tolerance);
    Block wake;
    Handle handle = 0;
    {
        const std::lock_guard lock(mutex_);
        handle = next_++;
        order_.emplace(latest, handle);
        blocks_.emplace(handle, std::pair(latest, std::move(block)));
        if (tolerance > 0)
            late_.emplace_back(after(seconds), handle);
        if (order_.begin()->second == handle)
            wake = waker_;
    }
    if (wake)
        wake();
    return handle;
}

void RunLoop::hurry()
{
    Block wake;
    {
        const std::lock_guard lock(mutex_);
        if (late_.empty())
            return;
        bringForward(std::numeric_limits<std::uint64_t>::max());
        wake = waker_;
    }
    if (wake)
        wake();
}

/// The blocks that are due by then can't come late any more. Under the lock.
void RunLoop::bringForward(std::uint64_t until)
{
    std::erase_if(late_, [&](const Key& key) {
        const auto& [due, handle] = key;
        if (due > until)
            return false;
        std::uint64_t& runsBy = blocks_.at(handle).first;
        order_.erase({ runsBy, handle });
        order_.emplace(due, handle);
        runsBy = due;
        return true;
    });
}

void RunLoop::cancel(Handle handle)
{
    Block dropped;
    const std::lock_guard lock(mutex_);
    const auto place = blocks_.find(handle);
    if (place == blocks_.end())
        return;
    dropped = std::move(place->second.second);
    drop(handle);
}

/// Under the lock; there must be such a block.
void RunLoop::drop(Handle handle)
{
    const auto place = blocks_.find(handle);
    order_.erase({ place->second.first, handle });
    std::erase_if(late_, [&](const Key& key) { return key.second == handle; });
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
            bringForward(clock_->nanoseconds());
            if (order_.empty() || order_.begin()->first > clock_->nanoseconds())
                return;
            const Handle handle = order_.begin()->second;
            block = std::move(blocks_.at(handle).second);
            drop(handle);
        }
        const Turn turn;
        block();
    }
}

void RunLoop::run(double seconds)
{
    if (runner_)
        runner_(seconds);
}

bool RunLoop::isMainThread()
{
    return std::this_thread::get_id() == mainThread;
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
    late_.clear();
    dropped.swap(blocks_);
}

RunLoop::Turn::Turn()
{
    if (turnDepth++ == endedTurns)
        ++turnNumber;
}

RunLoop::Turn::~Turn()
{
    --turnDepth;
    endedTurns = std::min(endedTurns, turnDepth);
    if (turnDepth == endedTurns)
        ++turnNumber;
}

void RunLoop::Turn::endAll()
{
    endedTurns = turnDepth;
    ++turnNumber;
}

std::optional<std::uint64_t> RunLoop::Turn::current()
{
    if (turnDepth == 0)
        return std::nullopt;
    return turnNumber;
}
