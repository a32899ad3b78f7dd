#pragma once

#include "appkit/NSView.h"

#include <string>

/// A line of text on a dark plate. Main thread.
class TooltipView final : public NSView {
public:
    using NSView::NSView;

    const std::string& text() const { return text_; }
    /// What doesn't fit into a plate of that width is left out.
    void setText(const std::string& text, double width);
    /// The size that the text asks for.
    CGSize fittingSize() const;

    void draw(const CGRect& dirty) override;

private:
    std::string text_;
};
