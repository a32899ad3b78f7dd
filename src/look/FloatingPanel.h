#pragma once

#include "appkit/NSPanel.h"
#include "windowserver/CGWindowLevel.h"

/// A panel that opens from the bar and never gets the keyboard, one level in front of those of `level`.
class FloatingPanel : public NSPanel {
public:
    FloatingPanel(CGSize size, CGWindowLevelKey level);

    bool canBecomeKey() const override { return false; }
};
