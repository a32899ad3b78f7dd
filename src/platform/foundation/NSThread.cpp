#include "foundation/NSThread.h"

#include "base/RunLoop.h"

#include <chrono>
#include <thread>

void NSThread::sleepForTimeInterval(double seconds)
{
    if (RunLoop::isMainThread())
        RunLoop::main().run(seconds);
    else
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}
