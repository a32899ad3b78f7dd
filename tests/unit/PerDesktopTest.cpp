#include "Fixture.h"

#include "base/PerDesktop.h"
#include "foundation/DispatchQueue.h"

#include <atomic>
#include <thread>

namespace {

std::string events;

struct Work {
    ~Work() { events += isDone ? "done " : "not done "; }
    std::atomic<bool> isDone = false;
};

struct Working {
    Work work;
    std::unique_ptr<DispatchQueue> queue = DispatchQueue::serial("test.working");
};

using PerDesktopTest = DesktopTest;

}

TEST_F(PerDesktopTest, AStateOutlivesTheBlockThatRunsAndDropsThoseThatWait)
{
    start();
    events.clear();
    Working* state = &perDesktop<Working>();
    state->queue->asyncAfter(1, [] { events += "never "; });
    stop();
    advance(2);
    EXPECT_EQ(events, "not done ");

    RunLoop::main().setClock(nullptr);
    start();
    events.clear();
    state = &perDesktop<Working>();
    std::atomic<bool> isRunning = false;
    state->queue->async([&isRunning, state] {
        isRunning = true;
        isRunning.notify_one();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        state->work.isDone = true;
    });
    state->queue->asyncAfter(1, [] { events += "never "; });
    isRunning.wait(false);
    stop();
    EXPECT_EQ(events, "done ");
    RunLoop::main().setClock(&clock);
}
