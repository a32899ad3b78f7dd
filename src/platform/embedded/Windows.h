#pragma once

#include "host/Windows.h"

#include <unordered_map>

namespace embedded {

class CallLog;
class World;
struct Window;

/// The window server's list as the program sees it. Main thread.
class Windows final : public host::Windows {
public:
    Windows(const World& world, CallLog& log)
        : world_(world)
        , log_(log)
    {
    }

    List all() override;
    List onScreen() override;
    std::shared_ptr<const host::Window> find(std::uint32_t number) override;
    /// Faults are scripted without a word.
    std::optional<std::uint64_t> changeCount() override { return std::nullopt; }
    std::optional<std::uint64_t> activeSpace() override;
    std::vector<host::DisplaySpaces> displaySpaces() override;

private:
    std::shared_ptr<const host::Window> record(const Window& window);

    const World& world_;
    CallLog& log_;
    /// As they were last listed: few change from one listing to the next.
    std::unordered_map<std::uint32_t, std::shared_ptr<const host::Window>> records_;
};

}
