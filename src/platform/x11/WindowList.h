#pragma once

#include "host/Windows.h"
#include "x11/Monitors.h"
#include "x11/WindowMirror.h"

#include <vector>

namespace x11 {

/// The window list and the spaces, put together from the mirror. A window's record is made again only when the window
/// has changed.
class WindowList final : public host::Windows {
public:
    WindowList(const WindowMirror& mirror, Monitors& monitors)
        : mirror_(mirror)
        , monitors_(monitors)
    {
    }

    List all() override;
    List onScreen() override;
    std::shared_ptr<const host::Window> find(std::uint32_t number) override;
    std::optional<std::uint64_t> changeCount() override { return mirror_.changeCount(); }
    std::optional<std::uint64_t> activeSpace() override;
    std::vector<host::DisplaySpaces> displaySpaces() override;

private:
    struct Entry {
        std::uint64_t revision = 0;
        std::uint32_t desktop = 0;
        std::uint32_t desktopCount = 0;
        std::shared_ptr<const host::Window> record;
    };

    const std::shared_ptr<const host::Window>& record(const WindowRecord& window);

    const WindowMirror& mirror_;
    Monitors& monitors_;
    /// By the windows' slots.
    std::vector<Entry> entries_;
    /// The last answer to `all`, and the mirror's count of then.
    List all_;
    std::optional<std::uint64_t> allCount_;
};

}
