#include "foundation/DispatchQueue.h"

#include "base/Clock.h"
#include "base/RunLoop.h"

#include <pthread.h>

#include <chrono>
#include <condition_variable>
#include <future>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace {

class MainQueue final : public DispatchQueue {
public:
    void asyncAfter(double seconds, Block block) override { RunLoop::main().schedule(seconds, std::move(block)); }
};

/// One thread, started at the first block; it ends with the queue, after the block that is running.
class SerialQueue final : public DispatchQueue {
public:
    explicit SerialQueue(std::string label)
        : label_(std::move(label))
    {
    }

    ~SerialQueue() override
    {
        {
            const std::lock_guard lock(mutex_);
            ending_ = true;
        }
        changed_.notify_one();
        if (thread_.joinable())
            thread_.join();
    }

    void asyncAfter(double seconds, Block block) override
    {
        if (RunLoop::main().clock().isManual()) {
            RunLoop::main().schedule(seconds, [queue = std::weak_ptr(alive_), run = std::move(block)] {
                if (!queue.expired())
                    run();
            });
            return;
        }
        const auto delay = std::chrono::duration_cast<Moment::duration>(std::chrono::duration<double>(seconds));
        const std::lock_guard lock(mutex_);
        blocks_.emplace(std::chrono::steady_clock::now() + delay, std::move(block));
        if (!thread_.joinable())
            start();
        changed_.notify_one();
    }

private:
    using Moment = std::chrono::steady_clock::time_point;

    void start()
    {
        thread_ = std::thread([this] { work(); });
        // The kernel keeps 15 characters of a thread's name: the last part of the label tells most.
        const auto dot = label_.rfind('.');
        pthread_setname_np(thread_.native_handle(), label_.substr(dot + 1, 15).c_str());
    }

    void work()
    {
        std::unique_lock lock(mutex_);
        while (!ending_) {
            if (blocks_.empty()) {
                changed_.wait(lock);
                continue;
            }
            const Moment due = blocks_.begin()->first;
            if (due > std::chrono::steady_clock::now()) {
                changed_.wait_until(lock, due);
                continue;
            }
            const Block block = std::move(blocks_.begin()->second);
            blocks_.erase(blocks_.begin());
            lock.unlock();
            block();
            lock.lock();
        }
    }

    std::string label_;
    /// Under a manual clock, where blocks wait in the main run loop, what ends them.
    std::shared_ptr<void> alive_ = std::make_shared<char>();
    std::mutex mutex_;
    std::condition_variable changed_;
    std::multimap<Moment, Block> blocks_;
    bool ending_ = false;
    std::thread thread_;
};

class GlobalQueue final : public DispatchQueue {
public:
    void asyncAfter(double seconds, Block block) override
    {
        if (RunLoop::main().clock().isManual()) {
            RunLoop::main().schedule(seconds, std::move(block));
            return;
        }
        std::thread([seconds, run = std::move(block)] {
            std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
            run();
        }).detach();
    }
};

}

DispatchQueue& DispatchQueue::main()
{
    static MainQueue queue;
    return queue;
}

DispatchQueue& DispatchQueue::global()
{
    static GlobalQueue queue;
    return queue;
}

void DispatchQueue::mainSync(const Block& block)
{
    if (RunLoop::isMainThread())
        return block();
    std::promise<void> ended;
    RunLoop::main().perform([&] {
        block();
        ended.set_value();
    });
    ended.get_future().wait();
}

std::unique_ptr<DispatchQueue> DispatchQueue::serial(const std::string& label)
{
    return std::make_unique<SerialQueue>(label);
}
