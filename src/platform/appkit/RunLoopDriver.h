#pragma once

#include <memory>

/// Has the toolkit's event loop run the main run loop's blocks when they are due, for as long as it lives. A block or
/// an event may begin a loop of its own (an alert, a menu): the blocks go on in it. Main thread.
class RunLoopDriver {
public:
    RunLoopDriver();
    ~RunLoopDriver();

private:
    class Alarm;

    std::unique_ptr<Alarm> alarm_;
};
