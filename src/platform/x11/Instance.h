#pragma once

#include "x11/Connection.h"

#include <sys/types.h>

#include <optional>

namespace x11 {

/// Which process of this program is the first on the display: the one whose window owns the selection "_VANTRY_Sn", n
/// the screen's number, as window managers do it (ICCCM 2.8). It goes with its process. Main thread.
class Instance {
public:
    /// Becomes the owner where there is none.
    explicit Instance(Connection& connection);

    /// The process that was there before this one.
    std::optional<pid_t> other() const { return other_; }

private:
    std::optional<pid_t> other_;
};

}
