#pragma once

#include "bar/BarPicture.h"
#include "bar/PreviewPanel.h"
#include "bar/TooltipPanel.h"
#include "foundation/NSTimer.h"

#include <functional>
#include <memory>
#include <optional>

/// What the pointer is over on a bar, and the panels that tell about it after a while: a tooltip, or the previews of an
/// application's windows. Main thread.
class BarHover {
public:
    /// `bar` is the view that shows `picture`; both outlive the hover. `onChange`: something else is hovered.
    BarHover(const NSView& bar, const BarPicture& picture, std::function<void()> onChange);
    ~BarHover();
    BarHover(const BarHover&) = delete;
    BarHover& operator=(const BarHover&) = delete;

    /// A `BarHit` value.
    std::optional<int> hit() const { return hit_; }
    void setHit(std::optional<int> hit);
    /// The pointer is outside of the bar, in screen space where the desktop knows. On its way to the preview, or in it,
    /// it is still with us.
    void pointerLeft(std::optional<CGPoint> at);
    /// Drops the tooltip and the preview, those that show and those to come.
    void cancelPanels();

    const TooltipPanel& tooltip() const { return tooltip_; }
    const PreviewPanel& preview() const { return preview_; }

private:
    bool isWithPreview(CGPoint pointer) const;
    void showPanel();

    const NSView& bar_;
    const BarPicture& picture_;
    std::function<void()> onChange_;
    std::optional<int> hit_;
    TooltipPanel tooltip_;
    PreviewPanel preview_;
    // Neither timer outlives the hover.
    std::shared_ptr<NSTimer> panelTimer_;
    std::shared_ptr<NSTimer> leavingTimer_;
};
