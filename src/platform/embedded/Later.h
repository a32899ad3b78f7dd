#pragma once

#include "base/RunLoop.h"

#include <functional>
#include <memory>
#include <utility>

namespace embedded {

/// Blocks put off to a later turn of the main run loop, dropped when their owner goes. Main thread.
class Later {
public:
    void after(double seconds, std::function<void()> block)
    {
        RunLoop::main().schedule(seconds, [alive = std::weak_ptr(alive_), block = std::move(block)] {
            if (!alive.expired())
                block();
        });
    }
    void atNextTurn(std::function<void()> block) { after(0, std::move(block)); }

private:
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}
