#pragma once

#include <functional>
#include <memory>
#include <string>

/// A queue of blocks. Blocks of the main queue run on the main thread; those of a serial queue one after the other on a
/// thread of its own, started at its first use; those of the global queue each on its own. Under a manual clock all run
/// on the main run loop, in the order of their times. Any thread.
class DispatchQueue {
public:
    using Block = std::function<void()>;

    static DispatchQueue& main();
    static DispatchQueue& global();
    /// Runs the block on the main thread and returns when it has ended; where the caller is there already, at once.
    static void mainSync(const Block& block);
    static std::unique_ptr<DispatchQueue> serial(const std::string& label);

    virtual ~DispatchQueue() = default;
    void async(Block block) { asyncAfter(0, std::move(block)); }
    virtual void asyncAfter(double seconds, Block block) = 0;
};
