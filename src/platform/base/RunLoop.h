#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

class Clock;

/// The main thread's queue of blocks, each due at a time of the clock. It has no waiting of its own: a driver (the
/// toolkit's event loop, or a manual clock) calls `runDue` when the earliest block is due, and is told by the waker
/// when that moment changes.
class RunLoop {
public:
    using Block = std::function<void()>;
    using Handle = std::uint64_t;

    static RunLoop& main();

    /// The clock in force: the machine's until a test sets another. Set it before any timer exists.
    Clock& clock() const { return *clock_; }
    void setClock(Clock* clock);

    /// Runs the block on the main thread, `seconds` from now; blocks due at the same time run in the order they came.
    /// Any thread.
    Handle schedule(double seconds, Block block);
    /// Runs the block on the main thread at its next turn. Any thread.
    Handle perform(Block block) { return schedule(0, std::move(block)); }
    /// A block that has run, or never was, is passed over. Any thread.
    void cancel(Handle handle);

    /// When the earliest block is due, in nanoseconds of the clock. Any thread.
    std::optional<std::uint64_t> nextDue() const;
    /// Runs the blocks due by now, those that they add for now included up to a bound. Main thread.
    void runDue();
    /// Called, on whatever thread, when the earliest due time has become earlier.
    void setWaker(Block waker);
    /// Forgets every block: between tests.
    void reset();

    /// One delivery of work to the program: a block, an input event, a paint. Within a turn the stores that the program
    /// reads (preferences) hold still, so that one refresh never sees half a change.
    class Turn {
    public:
        Turn();
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

        /// The number of the turn in progress; absent outside of any. Main thread.
        static std::optional<std::uint64_t> current();
    };

private:
    RunLoop();

    using Key = std::pair<std::uint64_t, Handle>;

    Clock* clock_;
    mutable std::mutex mutex_;
    std::set<Key> order_;
    std::unordered_map<Handle, std::pair<std::uint64_t, Block>> blocks_;
    Handle next_ = 1;
    Block waker_;
};
