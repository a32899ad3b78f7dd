#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// A short text, mostly a number, that a program shows on its launcher.
struct Badge {
    /// The name that the launcher shows.
    std::string application;
    /// Empty while there is none.
    std::string text;
};

/// The desktop's launchers and their badges; here, of one that has none. Main thread.
class Badges {
public:
    virtual ~Badges() = default;

    /// The process that shows them; absent when none runs.
    virtual std::optional<pid_t> owner() { return std::nullopt; }
    /// In the order of the launchers; absent when their owner doesn't answer within `timeout` seconds.
    virtual std::optional<std::vector<Badge>> read(double /*timeout*/) { return std::nullopt; }
};

}
