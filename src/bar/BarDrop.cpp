#include "bar/BarDrop.h"

#include "controls/Trash.h"
#include "log/Log.h"
#include "model/Click.h"

#include <iterator>
#include <utility>

namespace {

/// How long, in seconds, it is held over a button before that acts.
constexpr double holdSeconds = 0.5;

const BarItem* itemAt(int hit, const BarPicture& picture)
{
    if (hit == BarHit::finder)
        return picture.finder ? &*picture.finder : nullptr;
    return hit >= 0 && hit < std::ssize(picture.buttons) ? &picture.buttons[static_cast<std::size_t>(hit)] : nullptr;
}

}

NSDragOperation BarDrop::moveTo(std::optional<int> hit, const NSDraggingInfo& dragged)
{
    if (hit != hit_) {
        leave();
        hit_ = hit;
        const BarItem* item = hit ? itemAt(*hit, picture_) : nullptr;
        if (item && item->isRunning())
            timer_ = NSTimer::scheduledTimer(holdSeconds, false, [this] { bringForward(); });
    }
    return hit == BarHit::trash && !dragged.fileURLs.empty() ? NSDragOperation::move : NSDragOperation::none;
}

void BarDrop::leave()
{
    hit_.reset();
    if (timer_)
        std::exchange(timer_, nullptr)->invalidate();
}

bool BarDrop::drop(const NSDraggingInfo& dragged)
{
    const bool isTrash = hit_ == BarHit::trash;
    leave();
    return isTrash && Trash::throwAway(dragged.fileURLs);
}

void BarDrop::bringForward() const
{
    if (const BarItem* item = itemAt(*hit_, picture_)) {
        Log::debug("drag: held over ", item->name);
        DockModel::bringForward(*item);
    }
}
