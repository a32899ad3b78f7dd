#pragma once

#include "base/CGGeometry.h"
#include "host/Windows.h"

#include <sys/types.h>

#include <string>
#include <unordered_map>

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
    /// Faults are scripted without a word.
    std::optional<std::uint64_t> changeCount() override { return std::nullopt; }
    std::uint64_t activeSpace() override;
    std::optional<Value> displaySpaces() override;
    std::optional<Value> spaces(std::uint32_t window) override;

private:
    /// All that an entry tells.
    struct Facts {
        pid_t owner = 0;
        int layer = 0;
        CGRect bounds;
        bool isOnScreen = false;
        std::optional<std::string> title;
        std::optional<std::string> ownerName;
        bool operator==(const Facts&) const = default;
    };
    struct Entry {
        Facts facts;
        Value value;
    };

    Facts factsOf(const Window& window) const;
    const Value& entry(const Window& window);

    World& world_;
    CallLog& log_;
    /// As they were last listed, by the window's number: few change from one listing to the next.
    std::unordered_map<std::uint32_t, Entry> entries_;
};

}
