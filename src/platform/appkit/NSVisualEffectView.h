#pragma once

#include "appkit/NSView.h"

enum class NSVisualEffectMaterial { hudWindow = 13 };
enum class NSVisualEffectBlendingMode { behindWindow = 0 };
enum class NSVisualEffectState { active = 1 };

/// A backdrop: what is behind the window, blurred, under a dark veil. Where the desktop can't blend, the veil alone,
/// opaque. There is one material, it always blends behind the window, and it is always active.
class NSVisualEffectView : public NSView {
public:
    using NSView::NSView;

    void setMaterial(NSVisualEffectMaterial) { }
    void setBlendingMode(NSVisualEffectBlendingMode) { }
    void setState(NSVisualEffectState) { }

    void setHidden(bool hidden) override;
    void draw(const CGRect& dirty) override;
};
