#pragma once

#include "freedesktop/NotifierHost.h"
#include "host/StatusItems.h"
#include "x11/Monitors.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QColor;

namespace x11 {

/// Status items by the session bus where a panel shows those (StatusNotifierItem), else in the screen's tray. The
/// toolkit does both, and decides for good which of the two when the first item is made; so that one waits until there
/// is either. Main thread.
class StatusItems final : public host::StatusItems {
public:
    /// `hasWaited` is called after the server was waited for: events may have come along.
    StatusItems(freedesktop::LastingBus& bus, Connection& connection, const Monitors& monitors,
        std::function<void()> hasWaited);
    ~StatusItems() override;

    std::unique_ptr<host::StatusItem> add() override;

    void handle(const xcb_generic_event_t& event);

private:
    class Item;

    /// Shows what can be shown now.
    void follow();
    /// Absent where the tray doesn't say.
    std::optional<QColor> trayColor(xcb_window_t tray) const;

    Connection& connection_;
    const Monitors& monitors_;
    std::function<void()> hasWaited_;
    freedesktop::NotifierHost notifier_;
    std::shared_ptr<std::vector<Item*>> items_ = std::make_shared<std::vector<Item*>>();
};

}
