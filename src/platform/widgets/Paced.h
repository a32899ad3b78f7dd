#pragma once

#include "base/Clock.h"
#include "base/RunLoop.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// Lets a value through at once, the next one a frame later at the soonest, and the last one always: a slider that is
/// dragged has hundreds in a second, and each is written to a file. Main thread.
template <class Value>
class Paced {
public:
    void tell(Value value, std::function<void(Value)> set)
    {
        constexpr double frame = 1.0 / 60;
        value_ = std::move(value);
        set_ = std::move(set);
        const double rest = toldAt_ ? frame - static_cast<double>(now() - *toldAt_) * 1e-9 : 0;
        if (rest <= 0) {
            flush();
            return;
        }
        if (std::exchange(isDue_, true))
            return;
        RunLoop::main().schedule(rest, [this, lives = std::weak_ptr(lives_)] {
            if (!lives.expired())
                flush();
        });
    }

    bool isWaiting() const { return value_.has_value(); }
    /// What waits is told now.
    void flush()
    {
        isDue_ = false;
        const auto value = std::exchange(value_, std::nullopt);
        if (!value || !set_)
            return;
        toldAt_ = now();
        const auto set = set_; // It may be replaced by what it does.
        set(*value);
    }

private:
    static std::uint64_t now() { return RunLoop::main().clock().nanoseconds(); }

    std::function<void(Value)> set_;
    std::optional<Value> value_;
    std::optional<std::uint64_t> toldAt_;
    bool isDue_ = false;
    std::shared_ptr<bool> lives_ = std::make_shared<bool>(true);
};
