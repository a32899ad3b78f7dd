#pragma once

#include "host/Windows.h"

namespace embedded {

class CallLog;
class World;
struct Window;

/// The window server's list as the program sees it. Main thread.
class Windows final : public host::Windows {
public:
    Windows(World& world, CallLog& log)
        : world_(world)
        , log_(log)
    {
    }

    std::optional<Value> list(bool onScreenOnly) override;
    std::uint64_t activeSpace() override;
    std::optional<Value> displaySpaces() override;
    std::optional<Value> spaces(std::uint32_t window) override;

private:
    Value entry(const Window& window) const;

    World& world_;
    CallLog& log_;
};

}
