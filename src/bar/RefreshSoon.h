#pragma once

#include "foundation/DispatchQueue.h"

#include <functional>
#include <memory>
#include <utility>

/// Gathers what asks for a refresh into one, however often it is asked: the refresh comes when the present turn of the
/// run loop, and what it has set off by then, is over. Main thread.
class RefreshSoon {
public:
    explicit RefreshSoon(std::function<void()> refresh)
        : refresh_(std::move(refresh))
    {
    }

    void ask()
    {
        if (asked_)
            return;
        asked_ = std::make_shared<const bool>(true);
        DispatchQueue::main().async([this, asked = std::weak_ptr(asked_)] {
            if (asked.expired())
                return;
            asked_.reset();
            refresh_();
        });
    }

    /// The refresh has been done by other means, or isn't wanted any more.
    void cancel() { asked_.reset(); }

private:
    std::function<void()> refresh_;
    /// Present while a refresh is to come.
    std::shared_ptr<const bool> asked_;
};
