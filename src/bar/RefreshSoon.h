#pragma once

#include "foundation/DispatchQueue.h"
#include "foundation/NSDate.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

/// Gathers what asks for a refresh into one, however often it is asked: the refresh comes when the present turn of the
/// run loop, and what it has set off by then, is over, and no sooner after the one before than that took. Main thread.
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
        const std::uint64_t now = DispatchTime::now().uptimeNanoseconds;
        const double wait = restedAt_ > now ? static_cast<double>(restedAt_ - now) * 1e-9 : 0;
        DispatchQueue::main().asyncAfter(wait, [this, asked = std::weak_ptr(asked_)] {
            if (asked.expired())
                return;
            asked_.reset();
            refreshNow();
        });
    }

    /// The refresh has been done by other means, or isn't wanted any more.
    void cancel() { asked_.reset(); }

private:
    void refreshNow()
    {
        const std::uint64_t start = DispatchTime::now().uptimeNanoseconds;
        refresh_();
        const std::uint64_t end = DispatchTime::now().uptimeNanoseconds;
        restedAt_ = end + (end - start);
    }

    std::function<void()> refresh_;
    /// Present while a refresh is to come.
    std::shared_ptr<const bool> asked_;
    /// When as much time has passed as the last refresh took.
    std::uint64_t restedAt_ = 0;
};
