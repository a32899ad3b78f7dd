#pragma once

#include "freedesktop/BusService.h"

#include <functional>
#include <optional>

namespace freedesktop {

/// Whether a panel shows the status items that programs tell of on the session bus. Main thread.
class NotifierHost {
public:
    explicit NotifierHost(LastingBus& bus);

    /// Absent until it is known, and while whoever should know doesn't answer.
    std::optional<bool> isThere() const { return isThere_; }

    std::function<void()> onChange;

private:
    void ask();
    void set(std::optional<bool> isThere);

    BusService watcher_;
    std::optional<bool> isThere_;
};

}
