#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

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
    /// It may come up to `tolerance` seconds late, to run together with others, unless `hurry` is called meanwhile. Any
    /// thread.
    Handle schedule(double seconds, Block block, double tolerance = 0);
    /// Runs the block on the main thread at its next turn. Any thread.
    Handle perform(Block block) { return schedule(0, std::move(block)); }
    /// Something has happened that may concern any block: those that could come late no longer do. Any thread.
    void hurry();
    /// A block that has run, or never was, is passed over. Any thread.
    void cancel(Handle handle);

    /// When the program must run the next block, in nanoseconds of the clock. Any thread.
    std::optional<std::uint64_t> nextDue() const;
    /// Runs the blocks due by now, those that they add for now included up to a bound. Main thread.
    void runDue();
    /// Called, on whatever thread, when the earliest due time has become earlier.
    void setWaker(Block waker);

    /// Lets so many seconds go by, in which the driver delivers whatever comes: blocks, events, news. Main thread.
    void run(double seconds);
    /// How the driver does that.
    void setRunner(std::function<void(double seconds)> runner) { runner_ = std::move(runner); }
    static bool isMainThread();
    /// Forgets every block: between tests.
    void reset();

    /// One delivery of work to the program: a block, an input event, a paint. Within a turn the stores that the program
    /// reads (preferences) hold still, so that one refresh never sees half a change. Main thread.
    class Turn {
    public:
        Turn();
        ~Turn();
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

        /// The number of the turn in progress; absent outside of any.
        static std::optional<std::uint64_t> current();
        /// Ends the turns that are open: what opened them has begun a loop of its own. What is delivered in it are
        /// turns of their own, and so is what remains to be done when it has returned.
        static void endAll();
    };

private:
    RunLoop();

    using Key = std::pair<std::uint64_t, Handle>;

    std::uint64_t after(double seconds) const;
    void bringForward(std::uint64_t until);
    void drop(Handle handle);

    Clock* clock_;
    mutable std::mutex mutex_;
    /// By when each block must run.
    std::set<Key> order_;
    /// Of the blocks that can come late, when they are due.
    std::vector<Key> late_;
    std::unordered_map<Handle, std::pair<std::uint64_t, Block>> blocks_;
    Handle next_ = 1;
    Block waker_;
    std::function<void(double)> runner_;
};
