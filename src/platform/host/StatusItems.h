#pragma once

#include "base/CGGeometry.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QImage;
class QRect;

namespace host {

/// An entry of a status item's menu, for whoever shows the menu in the program's place. One without a title separates.
struct StatusEntry {
    std::string title;
    std::string toolTip;
    /// As people read it: "Super+Q".
    std::string keys;
    bool isEnabled = true;
    std::function<void()> choose;
};

/// What a status item is.
struct StatusItemFacts {
    /// For those who don't see it.
    std::string description;
    /// The picture as a square of so many pixels. Only its shape counts: it is drawn in the colour of what stands
    /// beside it. Null where there is none.
    std::function<QImage(int side)> shape;
    std::vector<StatusEntry> entries;
    /// It was pressed, and its menu is to open beside it. Both in the toolkit's pixels: the item, and the room that the
    /// menu has.
    std::function<void(const QRect& item, const QRect& room)> onPress;
};

/// A status item that is there until it is destroyed, after which it calls nobody.
class StatusItem {
public:
    virtual ~StatusItem() = default;
    virtual void update(StatusItemFacts facts) = 0;
    /// Screen space; absent while it has no place, or where that can't be known.
    virtual std::optional<CGRect> frame() const = 0;
};

/// The small pictures at the end of the menu bar, or in the tray of a panel. Main thread.
class StatusItems {
public:
    virtual ~StatusItems() = default;
    /// Null where they show nowhere. The desktop outlives it, or it shows nowhere from then on.
    virtual std::unique_ptr<StatusItem> add() { return nullptr; }
};

}
