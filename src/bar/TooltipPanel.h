#pragma once

#include "bar/TooltipView.h"
#include "look/FloatingPanel.h"

#include <string>

/// The tooltip of a bar. The pointer goes through it. Main thread.
class TooltipPanel final : public FloatingPanel {
public:
    TooltipPanel();

    /// `anchor` is what the text is about, in screen space.
    void show(const std::string& text, const CGRect& anchor);
    void hide() { orderOut(); }

    const TooltipView& label() const { return *label_; }

private:
    std::shared_ptr<TooltipView> label_;
};
