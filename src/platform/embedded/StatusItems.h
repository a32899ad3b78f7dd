#pragma once

#include "embedded/Notices.h"
#include "embedded/Screens.h"
#include "host/StatusItems.h"

#include <QRectF>

#include <memory>
#include <vector>

class QPainter;
class QPointF;

namespace embedded {

/// The status items in the menu bar of the primary display, from the right. Main thread.
class StatusItems final : public host::StatusItems {
public:
    StatusItems(const Screens& screens, const Notices& notices)
        : screens_(screens)
        , notices_(notices)
    {
    }

    std::unique_ptr<host::StatusItem> add() override;

    /// Onto a picture of that display.
    void paint(QPainter& painter, std::size_t screen) const;
    /// The item at a point of that picture; null where there is none.
    const host::StatusItemFacts* itemAt(const QPointF& point, std::size_t screen) const;
    /// Where the item lies in the picture of the primary display; empty while that has no menu bar.
    QRectF place(const host::StatusItemFacts& item) const;

    const std::vector<std::shared_ptr<const host::StatusItemFacts>>& all() const { return *items_; }

private:
    class Item;
    using Items = std::vector<std::shared_ptr<const host::StatusItemFacts>>;

    const Screens& screens_;
    const Notices& notices_;
    std::shared_ptr<Items> items_ = std::make_shared<Items>();
};

}
