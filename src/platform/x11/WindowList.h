#pragma once

#include "host/Windows.h"
#include "x11/Monitors.h"
#include "x11/ProcessList.h"

#include <unordered_map>

namespace x11 {

/// The window list and the spaces, put together from the mirror. A window's entry is made again only when the window
/// has changed.
class WindowList final : public host::Windows {
public:
    WindowList(const WindowMirror& mirror, Monitors& monitors, ProcessList& processes)
        : mirror_(mirror)
        , monitors_(monitors)
        , processes_(processes)
    {
    }

    std::optional<Value> list(bool onScreenOnly) override;
    std::optional<std::uint64_t> changeCount() override { return mirror_.eventCount(); }
    std::uint64_t activeSpace() override;
    std::optional<Value> displaySpaces() override;
    std::optional<Value> spaces(std::uint32_t window) override;

private:
    struct Entry {
        std::uint64_t revision;
        bool isOnScreen;
        std::shared_ptr<const host::Process> owner;
        Value value;
    };

    const Value& entry(const WindowRecord& window, bool isOnScreen);

    const WindowMirror& mirror_;
    Monitors& monitors_;
    ProcessList& processes_;
    std::unordered_map<xcb_window_t, Entry> entries_;
};

}
