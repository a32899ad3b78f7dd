#pragma once

#include "appkit/NSView.h"

/// A backdrop: what is behind the window, blurred, under a dark veil. Where the desktop can't blend, the veil alone,
/// opaque.
class NSVisualEffectView : public NSView {
public:
    using NSView::NSView;

    void setHidden(bool hidden) override;
    void draw(const CGRect& dirty) override;
};
