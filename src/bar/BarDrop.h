#pragma once

#include "appkit/NSDragging.h"
#include "bar/BarPicture.h"
#include "foundation/NSTimer.h"

#include <memory>
#include <optional>

/// Something that is dragged over a bar from another program. Held over a button for a while it brings the button's
/// window forward, to be dropped there; files can be dropped on the Trash. Main thread.
class BarDrop {
public:
    /// What the bar shows, which outlives this.
    explicit BarDrop(const BarPicture& picture)
        : picture_(picture)
    {
    }
    ~BarDrop() { leave(); }
    BarDrop(const BarDrop&) = delete;
    BarDrop& operator=(const BarDrop&) = delete;

    /// It is over that `BarHit` value. Gives what a drop there would do.
    NSDragOperation moveTo(std::optional<int> hit, const NSDraggingInfo& dragged);
    void leave();
    /// False where nothing can be dropped.
    bool drop(const NSDraggingInfo& dragged);

private:
    void bringForward() const;

    const BarPicture& picture_;
    std::optional<int> hit_;
    std::shared_ptr<NSTimer> timer_;
};
