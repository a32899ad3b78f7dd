#pragma once

#include "host/Displays.h"

namespace embedded {

class World;

/// The attached displays as the program sees them. Main thread.
class Displays final : public host::Displays {
public:
    explicit Displays(const World& world)
        : world_(world)
    {
    }

    const std::vector<host::Display>& all() override;
    std::optional<std::size_t> main() override;

private:
    const World& world_;
    std::vector<host::Display> all_;
};

}
