#pragma once

#include "host/Badges.h"

namespace embedded {

class CallLog;
class World;

/// The Dock's tiles as the program sees them, by way of accessibility. Main thread.
class Badges final : public host::Badges {
public:
    Badges(const World& world, CallLog& log)
        : world_(world)
        , log_(log)
    {
    }

    std::optional<pid_t> owner() override;
    std::optional<std::vector<host::Badge>> read(double timeout) override;

private:
    const World& world_;
    CallLog& log_;
};

}
